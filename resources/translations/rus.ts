<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>AboutProgrammWindowsWidget</name>
    <message>
        <source>action.check_update</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Проверить обновления</translation>
    </message>
    <message>
        <source>label.copyright</source>
        <extracomment>English: Copyright</extracomment>
        <translation>Авторские права</translation>
    </message>
    <message>
        <source>label.release_date</source>
        <extracomment>English: Updated at</extracomment>
        <translation>Дата обновления</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version</extracomment>
        <translation>Версия</translation>
    </message>
    <message>
        <source>message.you_have_actual_version</source>
        <extracomment>English: You have the latest version</extracomment>
        <translation>У вас установлена последняя версия</translation>
    </message>
    <message>
        <source>title.about_widget_title</source>
        <extracomment>English: About</extracomment>
        <translation>О программе</translation>
    </message>
    <message>
        <source>title.you_have_actual_version</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Проверка обновлений</translation>
    </message>
</context>
<context>
    <name>Application</name>
    <message>
        <source>title.application_name</source>
        <extracomment>English: TAVERO</extracomment>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>warning.running_without_admin_permissions</source>
        <extracomment>English: Сertain features may require you to run the application as administrator.

Open VPN connection and the “Killswitch” feature are not allowed without administrator rights.

If the application is used on a remote computer, connecting via IKEv2 without administrator rights will disable remote access.</extracomment>
        <translation>Для некоторых функций может потребоваться запуск приложения от имени администратора.

Подключение Open VPN и функция «Kill Switch» недоступны без прав администратора.

Если приложение используется на удалённом компьютере, подключение по IKEv2 без прав администратора отключит удалённый доступ.</translation>
    </message>
</context>
<context>
    <name>Gui::ServerSelectionWidget</name>
    <message>
        <source>label.all_servers</source>
        <extracomment>English: All servers</extracomment>
        <translation>Все серверы</translation>
    </message>
    <message>
        <source>label.recommended_servers</source>
        <extracomment>English: Recommended</extracomment>
        <translation>Рекомендуемые</translation>
    </message>
</context>
<context>
    <name>Gui::StatusWidget</name>
    <message>
        <source>action.change_server</source>
        <extracomment>English: Change server</extracomment>
        <translation>Сменить сервер</translation>
    </message>
    <message>
        <source>warning.change_protocol_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor connection</extracomment>
        <translation>Автоматическая смена протокола из-за плохого соединения</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection</extracomment>
        <translation>Не удалось подключиться. Проверьте сетевое подключение</translation>
    </message>
    <message>
        <source>warning.killswitch_triggered</source>
        <extracomment>English: Using Killswitch</extracomment>
        <translation>Kill Switch активен</translation>
    </message>
    <message>
        <source>warning.no_network</source>
        <extracomment>English: Offline</extracomment>
        <translation>Нет сети</translation>
    </message>
    <message>
        <source>warning.problems_with_vpn_server_connect_to_another_server</source>
        <extracomment>English: Connection problem with VPN server &quot;%1&quot;. Recommended to change server</extracomment>
        <translation>Проблема подключения к VPN-серверу «%1». Рекомендуем сменить сервер</translation>
    </message>
    <message>
        <source>warning.protocol_was_changed_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor server connection</extracomment>
        <translation>Автоматическая смена протокола из-за плохого соединения с сервером</translation>
    </message>
    <message>
        <source>warning.vpn_connection_was_reestablished</source>
        <extracomment>English: VPN connection is reestablished</extracomment>
        <translation>VPN-подключение восстановлено</translation>
    </message>
</context>
<context>
    <name>LoginController</name>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Авторизация</translation>
    </message>
</context>
<context>
    <name>LoginWidget</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Авторизация</translation>
    </message>
    <message>
        <source>label.login</source>
        <extracomment>English: Login</extracomment>
        <translation>Войти</translation>
    </message>
    <message>
        <source>label.your_email</source>
        <extracomment>English: Your email</extracomment>
        <translation>Ваш e-mail</translation>
    </message>
    <message>
        <source>label.your_password</source>
        <extracomment>English: Your password</extracomment>
        <translation>Ваш пароль</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>action.connect</source>
        <extracomment>English: Connect</extracomment>
        <translation>Подключить</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Отключить</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Выход</translation>
    </message>
    <message>
        <source>action.settings</source>
        <extracomment>English: Options</extracomment>
        <translation>Параметры</translation>
    </message>
    <message>
        <source>action.show_attachment</source>
        <extracomment>English: Show application</extracomment>
        <translation>Показать приложение</translation>
    </message>
</context>
<context>
    <name>NewVersionDialog</name>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>action.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>action.install</source>
        <extracomment>English: Install</extracomment>
        <translation>Установить</translation>
    </message>
    <message>
        <source>action.install_later</source>
        <extracomment>English: Install later</extracomment>
        <translation>Установить позже</translation>
    </message>
    <message>
        <source>label.new_version_detected_want_to_install</source>
        <extracomment>English: New version found! Want to update?</extracomment>
        <translation>Найдена новая версия! Обновить?</translation>
    </message>
    <message>
        <source>label.warning_about_necesry_update</source>
        <extracomment>English: We recommend always installing the latest updates to ensure maximum security and performance of the application.</extracomment>
        <translation>Рекомендуем всегда устанавливать последние обновления, чтобы обеспечить максимальную безопасность и производительность приложения.</translation>
    </message>
    <message>
        <source>label.whats_new</source>
        <extracomment>English: What&apos;s new?</extracomment>
        <translation>Что нового?</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>action.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>action.continue</source>
        <extracomment>English: Continue</extracomment>
        <translation>Продолжить</translation>
    </message>
    <message>
        <source>action.no</source>
        <extracomment>English: No</extracomment>
        <translation>Нет</translation>
    </message>
    <message>
        <source>action.yes</source>
        <extracomment>English: YES</extracomment>
        <translation>ДА</translation>
    </message>
    <message>
        <source>body.do_we_need_enable_internet_interfaces</source>
        <extracomment>English: Should network adapters be enabled?</extracomment>
        <translation>Включить сетевые адаптеры?</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered</source>
        <extracomment>English: Killswitch is triggered.</extracomment>
        <translation>Сработал Kill Switch.</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered_second_time</source>
        <extracomment>English: Killswitch reactivated</extracomment>
        <translation>Kill Switch сработал повторно</translation>
    </message>
    <message>
        <source>label.auto_protocol</source>
        <extracomment>English: Automatic</extracomment>
        <translation>Автоматически</translation>
    </message>
    <message>
        <source>label.can_not_create_config_for_open_vpn</source>
        <extracomment>English: Failed to create configuration file for Open VPN</extracomment>
        <translation>Не удалось создать файл конфигурации Open VPN</translation>
    </message>
    <message>
        <source>label.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Подключено</translation>
    </message>
    <message>
        <source>label.connection_opens</source>
        <extracomment>English: Opening connection</extracomment>
        <translation>Выполняется подключение</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Отключено</translation>
    </message>
    <message>
        <source>label.no_config_for_open_vpn</source>
        <extracomment>English: Failed to get configuration for Open VPN</extracomment>
        <translation>Не удалось получить конфигурацию Open VPN</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Не защищено</translation>
    </message>
    <message>
        <source>label.program_is_already_running</source>
        <extracomment>English: Application &quot;%1&quot; is already running</extracomment>
        <translation>Приложение «%1» уже запущено</translation>
    </message>
    <message>
        <source>label.protected</source>
        <extracomment>English: Protected</extracomment>
        <translation>Защищено</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Choose server</extracomment>
        <translation>Выбор сервера</translation>
    </message>
    <message>
        <source>title.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Подключено</translation>
    </message>
    <message>
        <source>title.connecting</source>
        <extracomment>English: Connecting...</extracomment>
        <translation>Подключение...</translation>
    </message>
    <message>
        <source>title.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Отключено</translation>
    </message>
    <message>
        <source>title.exit_confirmation</source>
        <extracomment>English: Confirmation</extracomment>
        <translation>Подтверждение</translation>
    </message>
    <message>
        <source>title.kill_switch_triggered</source>
        <extracomment>English: Attention</extracomment>
        <translation>Внимание</translation>
    </message>
    <message>
        <source>title.settings_confirmation</source>
        <extracomment>English: Changing the settings</extracomment>
        <translation>Изменение настроек</translation>
    </message>
    <message>
        <source>warning.authorization_failure_try_again</source>
        <extracomment>English: Authorization failed. Try to log in again</extracomment>
        <translation>Ошибка авторизации. Войдите снова</translation>
    </message>
    <message>
        <source>warning.can_not_connect</source>
        <extracomment>English: Failed to connect via any protocols</extracomment>
        <translation>Не удалось подключиться ни по одному протоколу</translation>
    </message>
    <message>
        <source>warning.can_not_connect_by_protocol</source>
        <extracomment>English: Unable to connect using protocol %1</extracomment>
        <translation>Не удалось подключиться по протоколу %1</translation>
    </message>
    <message>
        <source>warning.can_not_open_vpn_check_is_admin_granted</source>
        <extracomment>English: Unable to create Open VPN connection. Check premissions. The program must be open as an administrator</extracomment>
        <translation>Не удалось создать подключение Open VPN. Проверьте права доступа. Программа должна быть запущена от имени администратора</translation>
    </message>
    <message>
        <source>warning.cannot_open_ikev2_connection</source>
        <extracomment>English: Connection failed for IKEv2</extracomment>
        <translation>Сбой подключения IKEv2</translation>
    </message>
    <message>
        <source>warning.cannot_open_l2tp_connection</source>
        <extracomment>English: Connection failed for L2TP</extracomment>
        <translation>Сбой подключения L2TP</translation>
    </message>
    <message>
        <source>warning.cannot_open_pptp_connection</source>
        <extracomment>English: Connection failed for PPTP</extracomment>
        <translation>Сбой подключения PPTP</translation>
    </message>
    <message>
        <source>warning.confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO?</extracomment>
        <translation>Вы действительно хотите закрыть TAVERO?</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Не удалось подключиться. Проверьте подключение к интернету.</translation>
    </message>
    <message>
        <source>warning.could_not_break_vpn_connection</source>
        <extracomment>English: Disconnection of VPN failed</extracomment>
        <translation>Ошибка отключения VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_the_connection_manager_library</source>
        <extracomment>English: Unable to connect to the &apos;Connection Manager&apos; library (%1)</extracomment>
        <translation>Не удалось подключиться к библиотеке «Connection Manager» (%1)</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_vpn</source>
        <extracomment>English: Failed to connect VPN</extracomment>
        <translation>Не удалось подключить VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_using_pptp</source>
        <extracomment>English: Unable to connect with PPTP protocol</extracomment>
        <translation>Не удалось подключиться по протоколу PPTP</translation>
    </message>
    <message>
        <source>warning.failed_to_disable_vpn_connection</source>
        <extracomment>English: Failed to disconnet VPN</extracomment>
        <translation>Не удалось отключить VPN</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_off_the_internet</source>
        <extracomment>English: Network disable failed</extracomment>
        <translation>Не удалось отключить сеть</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_on_the_internet</source>
        <extracomment>English: Network enable failed</extracomment>
        <translation>Не удалось включить сеть</translation>
    </message>
    <message>
        <source>warning.found_rdp_ikev_can_disconnect_it_continue?</source>
        <extracomment>English: Running RDP service is detected. The remote desktop will not be available when using IKEv2. You can enter &quot;Settings&quot; to change VPN-protocol</extracomment>
        <translation>Обнаружена работающая служба RDP. При использовании IKEv2 удалённый рабочий стол будет недоступен. Сменить VPN-протокол можно в окне «Настройки»</translation>
    </message>
    <message>
        <source>warning.internet_connection_failed</source>
        <extracomment>English: Network connection error</extracomment>
        <translation>Ошибка сетевого подключения</translation>
    </message>
    <message>
        <source>warning.internet_shutdown_failed</source>
        <extracomment>English: Network disconnection error</extracomment>
        <translation>Ошибка отключения сети</translation>
    </message>
    <message>
        <source>warning.l2tp_connection_fail</source>
        <extracomment>English: L2TP Connection failed</extracomment>
        <translation>Ошибка подключения L2TP</translation>
    </message>
    <message>
        <source>warning.network_unavailable</source>
        <extracomment>English: Network unavailable</extracomment>
        <translation>Сеть недоступна</translation>
    </message>
    <message>
        <source>warning.no_server_available_in_country_select_another</source>
        <extracomment>English: No available servers in this country. Please select another one</extracomment>
        <translation>В этой стране нет доступных серверов. Выберите другую страну</translation>
    </message>
    <message>
        <source>warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.</source>
        <extracomment>English: No  specified protocols are supported by the selected server.</extracomment>
        <translation>Выбранный сервер не поддерживает ни один из указанных протоколов.</translation>
    </message>
    <message>
        <source>warning.open_vpn_connection_time_out</source>
        <extracomment>English: Connection timeout for Open VPN %1</extracomment>
        <translation>Истекло время ожидания подключения Open VPN %1</translation>
    </message>
    <message>
        <source>warning.open_vpn_does_not_exists_try_another_protocol</source>
        <extracomment>English: Unable to connect with Open VPN. Try to another protocol</extracomment>
        <translation>Не удалось подключиться через Open VPN. Попробуйте другой протокол</translation>
    </message>
    <message>
        <source>warning.open_vpn_running_fails_check_apps</source>
        <extracomment>English: Unable to run Open VPN connection process. Please check the installed software</extracomment>
        <translation>Не удалось запустить процесс подключения Open VPN. Проверьте установленное программное обеспечение</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_data_rejected</source>
        <extracomment>English: The server&apos;s connection data were rejected as unsafe. Try another server or contact support</extracomment>
        <translation>Данные подключения сервера отклонены как небезопасные. Выберите другой сервер или обратитесь в службу поддержки</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_does_not_respond</source>
        <extracomment>English: OpenVPN server does not respond</extracomment>
        <translation>Сервер OpenVPN не отвечает</translation>
    </message>
    <message>
        <source>warning.program_is_already_running_want_to_continue</source>
        <extracomment>English: Application &quot;%1&quot; is already running. Please, close the application. Do you want to proceed?</extracomment>
        <translation>Приложение «%1» уже запущено. Закройте приложение. Продолжить?</translation>
    </message>
    <message>
        <source>warning.selected_protocol_not_allowed_save_anyway?</source>
        <extracomment>English: The connection may be unsupported with the selected protocol. Are you sure to save?</extracomment>
        <translation>Подключение по выбранному протоколу может не поддерживаться. Всё равно сохранить?</translation>
    </message>
    <message>
        <source>warning.server_is_unavailable_select_an_available_server</source>
        <extracomment>English: Server &quot;%1&quot; is unavalible. Select another one.</extracomment>
        <translation>Сервер «%1» недоступен. Выберите другой.</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_IKEv2_protocol</source>
        <extracomment>English: Unable to connect with IKEv2 protocol</extracomment>
        <translation>Не удалось подключиться по протоколу IKEv2</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_L2TP_protocol</source>
        <extracomment>English: Unable to connect with L2TP protocol</extracomment>
        <translation>Не удалось подключиться по протоколу L2TP</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_connected</source>
        <extracomment>English: VPN connected</extracomment>
        <translation>VPN подключён</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_disabled</source>
        <extracomment>English: VPN connection closed</extracomment>
        <translation>VPN-подключение закрыто</translation>
    </message>
    <message>
        <source>warning.vpn_is_connected_confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO? A VPN connection will be terminated</extracomment>
        <translation>Вы действительно хотите закрыть TAVERO? VPN-подключение будет разорвано</translation>
    </message>
    <message>
        <source>warning.want_reconnect_with_new_protocol_settings?</source>
        <extracomment>English: Do you like to reconnect using new (или updated) protocol settings?</extracomment>
        <translation>Переподключиться с новыми настройками протокола?</translation>
    </message>
    <message>
        <source>warning.you_should_to_change_server</source>
        <extracomment>English: Try to select another server</extracomment>
        <translation>Попробуйте выбрать другой сервер</translation>
    </message>
</context>
<context>
    <name>ServerSelectionWidget</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Server selection</extracomment>
        <translation>Выбор сервера</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>&lt;a href=&quot;https://tavero.example&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example&lt;/span&gt;&lt;/a&gt;</source>
        <translation>&lt;a href=&quot;https://tavero.example&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example&lt;/span&gt;&lt;/a&gt;</translation>
    </message>
    <message>
        <source>&lt;a href=&quot;https://tavero.example/faq&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example/faq&lt;/span&gt;&lt;/a&gt;</source>
        <translation>&lt;a href=&quot;https://tavero.example/faq&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example/faq&lt;/span&gt;&lt;/a&gt;</translation>
    </message>
    <message>
        <source>&lt;a href=&quot;https://tavero.example/feedback&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example/feedback&lt;/span&gt;&lt;/a&gt;</source>
        <translation>&lt;a href=&quot;https://tavero.example/feedback&quot;&gt;&lt;span style=&quot; text-decoration: underline;&quot;&gt;https://tavero.example/feedback&lt;/span&gt;&lt;/a&gt;</translation>
    </message>
    <message>
        <source>FAQ:</source>
        <translation>Вопросы и ответы:</translation>
    </message>
    <message>
        <source>Support/Contact:</source>
        <translation>Поддержка/Контакты:</translation>
    </message>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>TAVERO:</source>
        <translation>TAVERO:</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Выйти</translation>
    </message>
    <message>
        <source>label.about_the_program</source>
        <extracomment>English: About</extracomment>
        <translation>О программе</translation>
    </message>
    <message>
        <source>label.account</source>
        <extracomment>English: Account</extracomment>
        <translation>Учётная запись</translation>
    </message>
    <message>
        <source>label.account:</source>
        <extracomment>English: Account:</extracomment>
        <translation>Учётная запись:</translation>
    </message>
    <message>
        <source>label.auto_terminates_connection_when_vpn_is_unavailable</source>
        <extracomment>English: Apllication will be acthomatically disconnected, when VPN is unavailable</extracomment>
        <translation>Сетевое подключение будет автоматически разорвано, если VPN недоступен</translation>
    </message>
    <message>
        <source>label.autoload</source>
        <extracomment>English: Autoload</extracomment>
        <translation>Автозагрузка</translation>
    </message>
    <message>
        <source>label.automatic_connection</source>
        <extracomment>English: Automatic connection</extracomment>
        <translation>Автоматическое подключение</translation>
    </message>
    <message>
        <source>label.basic_settings</source>
        <extracomment>English: Main settings:</extracomment>
        <translation>Основные настройки:</translation>
    </message>
    <message>
        <source>label.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>label.common</source>
        <extracomment>English: Common</extracomment>
        <translation>Общие</translation>
    </message>
    <message>
        <source>label.connect_to_the_last_selected_location</source>
        <extracomment>English: Connect to last selected location</extracomment>
        <translation>Подключаться к последнему выбранному местоположению</translation>
    </message>
    <message>
        <source>label.connect_to_the_recommended_location</source>
        <extracomment>English: Connect to recommended location</extracomment>
        <translation>Подключаться к рекомендуемому местоположению</translation>
    </message>
    <message>
        <source>label.connection_settings</source>
        <extracomment>English: Connection settings</extracomment>
        <translation>Настройки подключения</translation>
    </message>
    <message>
        <source>label.de.language</source>
        <extracomment>English: German</extracomment>
        <translation>Немецкий</translation>
    </message>
    <message>
        <source>label.email:</source>
        <extracomment>English: Email:</extracomment>
        <translation>Эл. почта:</translation>
    </message>
    <message>
        <source>label.en.language</source>
        <extracomment>English: English</extracomment>
        <translation>Английский</translation>
    </message>
    <message>
        <source>label.enable_killswitch</source>
        <extracomment>English: Enable Killswitch</extracomment>
        <translation>Включить Kill Switch</translation>
    </message>
    <message>
        <source>label.fr.language</source>
        <extracomment>English: French</extracomment>
        <translation>Французский</translation>
    </message>
    <message>
        <source>label.internet_killswitch</source>
        <extracomment>English: Network Killswitch</extracomment>
        <translation>Сетевой Kill Switch</translation>
    </message>
    <message>
        <source>label.internet_killswitch:</source>
        <extracomment>English: Internet Killswitch:</extracomment>
        <translation>Kill Switch для интернета:</translation>
    </message>
    <message>
        <source>label.killswitch_is_unavailable_want_to_continue</source>
        <extracomment>English: Killswitch is unavalible now. Continue?</extracomment>
        <translation>Kill Switch сейчас недоступен. Продолжить?</translation>
    </message>
    <message>
        <source>label.main</source>
        <extracomment>English: Main</extracomment>
        <translation>Главная</translation>
    </message>
    <message>
        <source>label.ok</source>
        <extracomment>English: OK</extracomment>
        <translation>ОК</translation>
    </message>
    <message>
        <source>label.ru.language</source>
        <extracomment>English: Russian</extracomment>
        <translation>Русский</translation>
    </message>
    <message>
        <source>label.run_at_login</source>
        <extracomment>English: Run at login</extracomment>
        <translation>Запускать при входе в систему</translation>
    </message>
    <message>
        <source>label.run_on_windows_startup</source>
        <extracomment>English: Run with Windows</extracomment>
        <translation>Запускать вместе с Windows</translation>
    </message>
    <message>
        <source>label.selectLanguage</source>
        <extracomment>English: Language</extracomment>
        <translation>Язык</translation>
    </message>
    <message>
        <source>label.select_protocol</source>
        <extracomment>English: Protocol</extracomment>
        <translation>Протокол</translation>
    </message>
    <message>
        <source>label.start_with_computer</source>
        <extracomment>English: Run at windows startup</extracomment>
        <translation>Запускать при старте Windows</translation>
    </message>
    <message>
        <source>label.value_mail</source>
        <extracomment>English: email</extracomment>
        <translation>эл. почта</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version %1</extracomment>
        <translation>Версия %1</translation>
    </message>
    <message>
        <source>title.settings:</source>
        <extracomment>English: Settings:</extracomment>
        <translation>Настройки:</translation>
    </message>
</context>
<context>
    <name>SplashScreen</name>
    <message>
        <source>label.loading</source>
        <extracomment>English: Loading...</extracomment>
        <translation>Загрузка...</translation>
    </message>
</context>
<context>
    <name>StatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Форма</translation>
    </message>
    <message>
        <source>action.connect</source>
        <extracomment>English: Connect</extracomment>
        <translation>Подключить</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Отключить</translation>
    </message>
    <message>
        <source>label.country_name</source>
        <extracomment>English: Country name</extracomment>
        <translation>Название страны</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Отключено</translation>
    </message>
    <message>
        <source>label.ipaddress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label.no_available_servers</source>
        <extracomment>English: No available servers</extracomment>
        <translation>Нет доступных серверов</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Не защищено</translation>
    </message>
    <message>
        <source>label.select_the_desired_server:</source>
        <extracomment>English: Choose server:</extracomment>
        <translation>Выберите сервер:</translation>
    </message>
    <message>
        <source>label.status:</source>
        <extracomment>English: Status:</extracomment>
        <translation>Статус:</translation>
    </message>
    <message>
        <source>label.your_ip:</source>
        <extracomment>English: Your IP:</extracomment>
        <translation>Ваш IP:</translation>
    </message>
</context>
<context>
    <name>VpnPointItemDelegate</name>
    <message>
        <source>label.server</source>
        <extracomment>English: servers</extracomment>
        <translation>серверы</translation>
    </message>
</context>
<context>
    <name>tavero::ConnectionChain</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Не удалось подключиться. Проверьте подключение к интернету.</translation>
    </message>
</context>
<context>
    <name>tavero::VpnManager</name>
    <message>
        <source>label.not_determined</source>
        <extracomment>English: Is not defined</extracomment>
        <translation>Не определён</translation>
    </message>
    <message>
        <source>warning.can_not_authorize_try_again</source>
        <extracomment>English: Authorization failed. Try again later.</extracomment>
        <translation>Ошибка авторизации. Повторите попытку позже.</translation>
    </message>
    <message>
        <source>warning.can_not_get_connection_info</source>
        <extracomment>English: Unable to get information of connection.</extracomment>
        <translation>Не удалось получить сведения о подключении.</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Не удалось подключиться. Проверьте сетевое подключение.</translation>
    </message>
    <message>
        <source>warning.failed_to_get_account_information</source>
        <extracomment>English: Failed to get information about account.</extracomment>
        <translation>Не удалось получить сведения об учётной записи.</translation>
    </message>
    <message>
        <source>warning.login_or_pass_are_incorrect</source>
        <extracomment>English: Wrong login or password.</extracomment>
        <translation>Неверный логин или пароль.</translation>
    </message>
    <message>
        <source>warning.response_does_not_match_requested_protocol_update_the_program</source>
        <extracomment>English: Version headers error. Update this programm</extracomment>
        <translation>Ошибка заголовков версии. Обновите программу</translation>
    </message>
</context>
<context>
    <name>tavero::VpnServerSelector</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Не удалось подключиться. Проверьте сетевое подключение.</translation>
    </message>
    <message>
        <source>warning.failed_get_information_about_vpn_servers</source>
        <extracomment>English: Unable to get information about VPN servers.</extracomment>
        <translation>Не удалось получить сведения о VPN-серверах.</translation>
    </message>
</context>
</TS>
