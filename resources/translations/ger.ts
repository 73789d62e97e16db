<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>AboutProgrammWindowsWidget</name>
    <message>
        <source>action.check_update</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Nach Updates suchen</translation>
    </message>
    <message>
        <source>label.copyright</source>
        <extracomment>English: Copyright</extracomment>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>label.release_date</source>
        <extracomment>English: Updated at</extracomment>
        <translation>Aktualisiert</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version</extracomment>
        <translation>Version</translation>
    </message>
    <message>
        <source>message.you_have_actual_version</source>
        <extracomment>English: You have the latest version</extracomment>
        <translation>Sie verwenden die neueste Version</translation>
    </message>
    <message>
        <source>title.about_widget_title</source>
        <extracomment>English: About</extracomment>
        <translation>Info</translation>
    </message>
    <message>
        <source>title.you_have_actual_version</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Update-Prüfung</translation>
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
        <translation>Für bestimmte Funktionen muss die Anwendung möglicherweise als Administrator ausgeführt werden.

Open-VPN-Verbindungen und die Funktion „Kill-Switch“ sind ohne Administratorrechte nicht verfügbar.

Wird die Anwendung auf einem entfernten Computer verwendet, unterbricht eine IKEv2-Verbindung ohne Administratorrechte den Fernzugriff.</translation>
    </message>
</context>
<context>
    <name>Gui::ServerSelectionWidget</name>
    <message>
        <source>label.all_servers</source>
        <extracomment>English: All servers</extracomment>
        <translation>Alle Server</translation>
    </message>
    <message>
        <source>label.recommended_servers</source>
        <extracomment>English: Recommended</extracomment>
        <translation>Empfohlen</translation>
    </message>
</context>
<context>
    <name>Gui::StatusWidget</name>
    <message>
        <source>action.change_server</source>
        <extracomment>English: Change server</extracomment>
        <translation>Server wechseln</translation>
    </message>
    <message>
        <source>warning.change_protocol_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor connection</extracomment>
        <translation>Automatischer Protokollwechsel wegen schlechter Verbindung</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection</extracomment>
        <translation>Verbindung fehlgeschlagen. Prüfen Sie die Netzwerkverbindung</translation>
    </message>
    <message>
        <source>warning.killswitch_triggered</source>
        <extracomment>English: Using Killswitch</extracomment>
        <translation>Kill-Switch aktiv</translation>
    </message>
    <message>
        <source>warning.no_network</source>
        <extracomment>English: Offline</extracomment>
        <translation>Offline</translation>
    </message>
    <message>
        <source>warning.problems_with_vpn_server_connect_to_another_server</source>
        <extracomment>English: Connection problem with VPN server &quot;%1&quot;. Recommended to change server</extracomment>
        <translation>Verbindungsproblem mit dem VPN-Server „%1“. Wir empfehlen, den Server zu wechseln</translation>
    </message>
    <message>
        <source>warning.protocol_was_changed_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor server connection</extracomment>
        <translation>Automatischer Protokollwechsel wegen schlechter Serververbindung</translation>
    </message>
    <message>
        <source>warning.vpn_connection_was_reestablished</source>
        <extracomment>English: VPN connection is reestablished</extracomment>
        <translation>Die VPN-Verbindung wurde wiederhergestellt</translation>
    </message>
</context>
<context>
    <name>LoginController</name>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Anmeldung</translation>
    </message>
</context>
<context>
    <name>LoginWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>label.login</source>
        <extracomment>English: Login</extracomment>
        <translation>Anmelden</translation>
    </message>
    <message>
        <source>label.your_email</source>
        <extracomment>English: Your email</extracomment>
        <translation>Ihre E-Mail-Adresse</translation>
    </message>
    <message>
        <source>label.your_password</source>
        <extracomment>English: Your password</extracomment>
        <translation>Ihr Passwort</translation>
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
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>action.settings</source>
        <extracomment>English: Options</extracomment>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>action.show_attachment</source>
        <extracomment>English: Show application</extracomment>
        <translation>Anwendung anzeigen</translation>
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
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>action.install</source>
        <extracomment>English: Install</extracomment>
        <translation>Installieren</translation>
    </message>
    <message>
        <source>action.install_later</source>
        <extracomment>English: Install later</extracomment>
        <translation>Später installieren</translation>
    </message>
    <message>
        <source>label.new_version_detected_want_to_install</source>
        <extracomment>English: New version found! Want to update?</extracomment>
        <translation>Neue Version gefunden! Möchten Sie aktualisieren?</translation>
    </message>
    <message>
        <source>label.warning_about_necesry_update</source>
        <extracomment>English: We recommend always installing the latest updates to ensure maximum security and performance of the application.</extracomment>
        <translation>Wir empfehlen, stets die neuesten Updates zu installieren, um maximale Sicherheit und Leistung der Anwendung zu gewährleisten.</translation>
    </message>
    <message>
        <source>label.whats_new</source>
        <extracomment>English: What&apos;s new?</extracomment>
        <translation>Was ist neu?</translation>
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
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>action.continue</source>
        <extracomment>English: Continue</extracomment>
        <translation>Fortfahren</translation>
    </message>
    <message>
        <source>action.no</source>
        <extracomment>English: No</extracomment>
        <translation>Nein</translation>
    </message>
    <message>
        <source>action.yes</source>
        <extracomment>English: YES</extracomment>
        <translation>JA</translation>
    </message>
    <message>
        <source>body.do_we_need_enable_internet_interfaces</source>
        <extracomment>English: Should network adapters be enabled?</extracomment>
        <translation>Sollen die Netzwerkadapter aktiviert werden?</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered</source>
        <extracomment>English: Killswitch is triggered.</extracomment>
        <translation>Der Kill-Switch wurde ausgelöst.</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered_second_time</source>
        <extracomment>English: Killswitch reactivated</extracomment>
        <translation>Kill-Switch erneut ausgelöst</translation>
    </message>
    <message>
        <source>label.auto_protocol</source>
        <extracomment>English: Automatic</extracomment>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>label.can_not_create_config_for_open_vpn</source>
        <extracomment>English: Failed to create configuration file for Open VPN</extracomment>
        <translation>Die Konfigurationsdatei für Open VPN konnte nicht erstellt werden</translation>
    </message>
    <message>
        <source>label.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>label.connection_opens</source>
        <extracomment>English: Opening connection</extracomment>
        <translation>Verbindung wird hergestellt</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>label.no_config_for_open_vpn</source>
        <extracomment>English: Failed to get configuration for Open VPN</extracomment>
        <translation>Die Konfiguration für Open VPN konnte nicht abgerufen werden</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Ungeschützt</translation>
    </message>
    <message>
        <source>label.program_is_already_running</source>
        <extracomment>English: Application &quot;%1&quot; is already running</extracomment>
        <translation>Die Anwendung „%1“ wird bereits ausgeführt</translation>
    </message>
    <message>
        <source>label.protected</source>
        <extracomment>English: Protected</extracomment>
        <translation>Geschützt</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Choose server</extracomment>
        <translation>Server auswählen</translation>
    </message>
    <message>
        <source>title.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>title.connecting</source>
        <extracomment>English: Connecting...</extracomment>
        <translation>Verbindung wird aufgebaut...</translation>
    </message>
    <message>
        <source>title.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>title.exit_confirmation</source>
        <extracomment>English: Confirmation</extracomment>
        <translation>Bestätigung</translation>
    </message>
    <message>
        <source>title.kill_switch_triggered</source>
        <extracomment>English: Attention</extracomment>
        <translation>Achtung</translation>
    </message>
    <message>
        <source>title.settings_confirmation</source>
        <extracomment>English: Changing the settings</extracomment>
        <translation>Einstellungen ändern</translation>
    </message>
    <message>
        <source>warning.authorization_failure_try_again</source>
        <extracomment>English: Authorization failed. Try to log in again</extracomment>
        <translation>Anmeldung fehlgeschlagen. Bitte melden Sie sich erneut an</translation>
    </message>
    <message>
        <source>warning.can_not_connect</source>
        <extracomment>English: Failed to connect via any protocols</extracomment>
        <translation>Mit keinem der Protokolle war eine Verbindung möglich</translation>
    </message>
    <message>
        <source>warning.can_not_connect_by_protocol</source>
        <extracomment>English: Unable to connect using protocol %1</extracomment>
        <translation>Verbindung über das Protokoll %1 nicht möglich</translation>
    </message>
    <message>
        <source>warning.can_not_open_vpn_check_is_admin_granted</source>
        <extracomment>English: Unable to create Open VPN connection. Check premissions. The program must be open as an administrator</extracomment>
        <translation>Die Open-VPN-Verbindung kann nicht erstellt werden. Prüfen Sie die Berechtigungen. Das Programm muss als Administrator ausgeführt werden</translation>
    </message>
    <message>
        <source>warning.cannot_open_ikev2_connection</source>
        <extracomment>English: Connection failed for IKEv2</extracomment>
        <translation>Verbindung über IKEv2 fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.cannot_open_l2tp_connection</source>
        <extracomment>English: Connection failed for L2TP</extracomment>
        <translation>Verbindung über L2TP fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.cannot_open_pptp_connection</source>
        <extracomment>English: Connection failed for PPTP</extracomment>
        <translation>Verbindung über PPTP fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO?</extracomment>
        <translation>Möchten Sie TAVERO wirklich beenden?</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Verbindung fehlgeschlagen. Prüfen Sie Ihre Internetverbindung.</translation>
    </message>
    <message>
        <source>warning.could_not_break_vpn_connection</source>
        <extracomment>English: Disconnection of VPN failed</extracomment>
        <translation>Trennen der VPN-Verbindung fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_the_connection_manager_library</source>
        <extracomment>English: Unable to connect to the &apos;Connection Manager&apos; library (%1)</extracomment>
        <translation>Verbindung zur Bibliothek „Connection Manager“ nicht möglich (%1)</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_vpn</source>
        <extracomment>English: Failed to connect VPN</extracomment>
        <translation>VPN-Verbindung fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.could_not_connect_using_pptp</source>
        <extracomment>English: Unable to connect with PPTP protocol</extracomment>
        <translation>Verbindung über das PPTP-Protokoll nicht möglich</translation>
    </message>
    <message>
        <source>warning.failed_to_disable_vpn_connection</source>
        <extracomment>English: Failed to disconnet VPN</extracomment>
        <translation>VPN konnte nicht getrennt werden</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_off_the_internet</source>
        <extracomment>English: Network disable failed</extracomment>
        <translation>Deaktivieren des Netzwerks fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_on_the_internet</source>
        <extracomment>English: Network enable failed</extracomment>
        <translation>Aktivieren des Netzwerks fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.found_rdp_ikev_can_disconnect_it_continue?</source>
        <extracomment>English: Running RDP service is detected. The remote desktop will not be available when using IKEv2. You can enter &quot;Settings&quot; to change VPN-protocol</extracomment>
        <translation>Ein laufender RDP-Dienst wurde erkannt. Bei Verwendung von IKEv2 ist der Remotedesktop nicht verfügbar. Unter „Einstellungen“ können Sie das VPN-Protokoll ändern</translation>
    </message>
    <message>
        <source>warning.internet_connection_failed</source>
        <extracomment>English: Network connection error</extracomment>
        <translation>Netzwerkverbindungsfehler</translation>
    </message>
    <message>
        <source>warning.internet_shutdown_failed</source>
        <extracomment>English: Network disconnection error</extracomment>
        <translation>Fehler beim Trennen des Netzwerks</translation>
    </message>
    <message>
        <source>warning.l2tp_connection_fail</source>
        <extracomment>English: L2TP Connection failed</extracomment>
        <translation>L2TP-Verbindung fehlgeschlagen</translation>
    </message>
    <message>
        <source>warning.network_unavailable</source>
        <extracomment>English: Network unavailable</extracomment>
        <translation>Netzwerk nicht verfügbar</translation>
    </message>
    <message>
        <source>warning.no_server_available_in_country_select_another</source>
        <extracomment>English: No available servers in this country. Please select another one</extracomment>
        <translation>In diesem Land sind keine Server verfügbar. Bitte wählen Sie ein anderes Land</translation>
    </message>
    <message>
        <source>warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.</source>
        <extracomment>English: No  specified protocols are supported by the selected server.</extracomment>
        <translation>Keines der angegebenen Protokolle wird vom ausgewählten Server unterstützt.</translation>
    </message>
    <message>
        <source>warning.open_vpn_connection_time_out</source>
        <extracomment>English: Connection timeout for Open VPN %1</extracomment>
        <translation>Zeitüberschreitung der Verbindung über Open VPN %1</translation>
    </message>
    <message>
        <source>warning.open_vpn_does_not_exists_try_another_protocol</source>
        <extracomment>English: Unable to connect with Open VPN. Try to another protocol</extracomment>
        <translation>Verbindung über Open VPN nicht möglich. Versuchen Sie ein anderes Protokoll</translation>
    </message>
    <message>
        <source>warning.open_vpn_running_fails_check_apps</source>
        <extracomment>English: Unable to run Open VPN connection process. Please check the installed software</extracomment>
        <translation>Der Open-VPN-Verbindungsprozess kann nicht gestartet werden. Bitte prüfen Sie die installierte Software</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_data_rejected</source>
        <extracomment>English: The server&apos;s connection data were rejected as unsafe. Try another server or contact support</extracomment>
        <translation>Die Verbindungsdaten des Servers wurden als unsicher abgelehnt. Versuchen Sie einen anderen Server oder wenden Sie sich an den Support</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_does_not_respond</source>
        <extracomment>English: OpenVPN server does not respond</extracomment>
        <translation>Der OpenVPN-Server antwortet nicht</translation>
    </message>
    <message>
        <source>warning.program_is_already_running_want_to_continue</source>
        <extracomment>English: Application &quot;%1&quot; is already running. Please, close the application. Do you want to proceed?</extracomment>
        <translation>Die Anwendung „%1“ wird bereits ausgeführt. Bitte schließen Sie die Anwendung. Möchten Sie fortfahren?</translation>
    </message>
    <message>
        <source>warning.selected_protocol_not_allowed_save_anyway?</source>
        <extracomment>English: The connection may be unsupported with the selected protocol. Are you sure to save?</extracomment>
        <translation>Mit dem ausgewählten Protokoll wird die Verbindung möglicherweise nicht unterstützt. Möchten Sie wirklich speichern?</translation>
    </message>
    <message>
        <source>warning.server_is_unavailable_select_an_available_server</source>
        <extracomment>English: Server &quot;%1&quot; is unavalible. Select another one.</extracomment>
        <translation>Der Server „%1“ ist nicht verfügbar. Wählen Sie einen anderen aus.</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_IKEv2_protocol</source>
        <extracomment>English: Unable to connect with IKEv2 protocol</extracomment>
        <translation>Verbindung über das IKEv2-Protokoll nicht möglich</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_L2TP_protocol</source>
        <extracomment>English: Unable to connect with L2TP protocol</extracomment>
        <translation>Verbindung über das L2TP-Protokoll nicht möglich</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_connected</source>
        <extracomment>English: VPN connected</extracomment>
        <translation>VPN verbunden</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_disabled</source>
        <extracomment>English: VPN connection closed</extracomment>
        <translation>VPN-Verbindung getrennt</translation>
    </message>
    <message>
        <source>warning.vpn_is_connected_confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO? A VPN connection will be terminated</extracomment>
        <translation>Möchten Sie TAVERO wirklich beenden? Die VPN-Verbindung wird getrennt</translation>
    </message>
    <message>
        <source>warning.want_reconnect_with_new_protocol_settings?</source>
        <extracomment>English: Do you like to reconnect using new (или updated) protocol settings?</extracomment>
        <translation>Möchten Sie die Verbindung mit den neuen Protokolleinstellungen erneut herstellen?</translation>
    </message>
    <message>
        <source>warning.you_should_to_change_server</source>
        <extracomment>English: Try to select another server</extracomment>
        <translation>Versuchen Sie, einen anderen Server auszuwählen</translation>
    </message>
</context>
<context>
    <name>ServerSelectionWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Server selection</extracomment>
        <translation>Serverauswahl</translation>
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
        <translation>FAQ:</translation>
    </message>
    <message>
        <source>Support/Contact:</source>
        <translation>Support/Kontakt:</translation>
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
        <translation>Abmelden</translation>
    </message>
    <message>
        <source>label.about_the_program</source>
        <extracomment>English: About</extracomment>
        <translation>Info</translation>
    </message>
    <message>
        <source>label.account</source>
        <extracomment>English: Account</extracomment>
        <translation>Konto</translation>
    </message>
    <message>
        <source>label.account:</source>
        <extracomment>English: Account:</extracomment>
        <translation>Konto:</translation>
    </message>
    <message>
        <source>label.auto_terminates_connection_when_vpn_is_unavailable</source>
        <extracomment>English: Apllication will be acthomatically disconnected, when VPN is unavailable</extracomment>
        <translation>Die Netzwerkverbindung wird automatisch getrennt, wenn das VPN nicht verfügbar ist</translation>
    </message>
    <message>
        <source>label.autoload</source>
        <extracomment>English: Autoload</extracomment>
        <translation>Autostart</translation>
    </message>
    <message>
        <source>label.automatic_connection</source>
        <extracomment>English: Automatic connection</extracomment>
        <translation>Automatische Verbindung</translation>
    </message>
    <message>
        <source>label.basic_settings</source>
        <extracomment>English: Main settings:</extracomment>
        <translation>Grundeinstellungen:</translation>
    </message>
    <message>
        <source>label.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>label.common</source>
        <extracomment>English: Common</extracomment>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>label.connect_to_the_last_selected_location</source>
        <extracomment>English: Connect to last selected location</extracomment>
        <translation>Mit dem zuletzt gewählten Standort verbinden</translation>
    </message>
    <message>
        <source>label.connect_to_the_recommended_location</source>
        <extracomment>English: Connect to recommended location</extracomment>
        <translation>Mit dem empfohlenen Standort verbinden</translation>
    </message>
    <message>
        <source>label.connection_settings</source>
        <extracomment>English: Connection settings</extracomment>
        <translation>Verbindungseinstellungen</translation>
    </message>
    <message>
        <source>label.de.language</source>
        <extracomment>English: German</extracomment>
        <translation>Deutsch</translation>
    </message>
    <message>
        <source>label.email:</source>
        <extracomment>English: Email:</extracomment>
        <translation>E-Mail:</translation>
    </message>
    <message>
        <source>label.en.language</source>
        <extracomment>English: English</extracomment>
        <translation>Englisch</translation>
    </message>
    <message>
        <source>label.enable_killswitch</source>
        <extracomment>English: Enable Killswitch</extracomment>
        <translation>Kill-Switch aktivieren</translation>
    </message>
    <message>
        <source>label.fr.language</source>
        <extracomment>English: French</extracomment>
        <translation>Französisch</translation>
    </message>
    <message>
        <source>label.internet_killswitch</source>
        <extracomment>English: Network Killswitch</extracomment>
        <translation>Netzwerk-Kill-Switch</translation>
    </message>
    <message>
        <source>label.internet_killswitch:</source>
        <extracomment>English: Internet Killswitch:</extracomment>
        <translation>Internet-Kill-Switch:</translation>
    </message>
    <message>
        <source>label.killswitch_is_unavailable_want_to_continue</source>
        <extracomment>English: Killswitch is unavalible now. Continue?</extracomment>
        <translation>Der Kill-Switch ist derzeit nicht verfügbar. Fortfahren?</translation>
    </message>
    <message>
        <source>label.main</source>
        <extracomment>English: Main</extracomment>
        <translation>Start</translation>
    </message>
    <message>
        <source>label.ok</source>
        <extracomment>English: OK</extracomment>
        <translation>OK</translation>
    </message>
    <message>
        <source>label.ru.language</source>
        <extracomment>English: Russian</extracomment>
        <translation>Russisch</translation>
    </message>
    <message>
        <source>label.run_at_login</source>
        <extracomment>English: Run at login</extracomment>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>label.run_on_windows_startup</source>
        <extracomment>English: Run with Windows</extracomment>
        <translation>Mit Windows starten</translation>
    </message>
    <message>
        <source>label.selectLanguage</source>
        <extracomment>English: Language</extracomment>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>label.select_protocol</source>
        <extracomment>English: Protocol</extracomment>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>label.start_with_computer</source>
        <extracomment>English: Run at windows startup</extracomment>
        <translation>Beim Windows-Start ausführen</translation>
    </message>
    <message>
        <source>label.value_mail</source>
        <extracomment>English: email</extracomment>
        <translation>E-Mail</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version %1</extracomment>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>title.settings:</source>
        <extracomment>English: Settings:</extracomment>
        <translation>Einstellungen:</translation>
    </message>
</context>
<context>
    <name>SplashScreen</name>
    <message>
        <source>label.loading</source>
        <extracomment>English: Loading...</extracomment>
        <translation>Wird geladen...</translation>
    </message>
</context>
<context>
    <name>StatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Formular</translation>
    </message>
    <message>
        <source>action.connect</source>
        <extracomment>English: Connect</extracomment>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>label.country_name</source>
        <extracomment>English: Country name</extracomment>
        <translation>Ländername</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>label.ipaddress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label.no_available_servers</source>
        <extracomment>English: No available servers</extracomment>
        <translation>Keine Server verfügbar</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Ungeschützt</translation>
    </message>
    <message>
        <source>label.select_the_desired_server:</source>
        <extracomment>English: Choose server:</extracomment>
        <translation>Server auswählen:</translation>
    </message>
    <message>
        <source>label.status:</source>
        <extracomment>English: Status:</extracomment>
        <translation>Status:</translation>
    </message>
    <message>
        <source>label.your_ip:</source>
        <extracomment>English: Your IP:</extracomment>
        <translation>Ihre IP:</translation>
    </message>
</context>
<context>
    <name>VpnPointItemDelegate</name>
    <message>
        <source>label.server</source>
        <extracomment>English: servers</extracomment>
        <translation>Server</translation>
    </message>
</context>
<context>
    <name>tavero::ConnectionChain</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Verbindung fehlgeschlagen. Prüfen Sie Ihre Internetverbindung.</translation>
    </message>
</context>
<context>
    <name>tavero::VpnManager</name>
    <message>
        <source>label.not_determined</source>
        <extracomment>English: Is not defined</extracomment>
        <translation>Nicht ermittelt</translation>
    </message>
    <message>
        <source>warning.can_not_authorize_try_again</source>
        <extracomment>English: Authorization failed. Try again later.</extracomment>
        <translation>Anmeldung fehlgeschlagen. Versuchen Sie es später erneut.</translation>
    </message>
    <message>
        <source>warning.can_not_get_connection_info</source>
        <extracomment>English: Unable to get information of connection.</extracomment>
        <translation>Verbindungsinformationen konnten nicht abgerufen werden.</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Verbindung fehlgeschlagen. Prüfen Sie die Netzwerkverbindung.</translation>
    </message>
    <message>
        <source>warning.failed_to_get_account_information</source>
        <extracomment>English: Failed to get information about account.</extracomment>
        <translation>Kontoinformationen konnten nicht abgerufen werden.</translation>
    </message>
    <message>
        <source>warning.login_or_pass_are_incorrect</source>
        <extracomment>English: Wrong login or password.</extracomment>
        <translation>Falscher Benutzername oder falsches Passwort.</translation>
    </message>
    <message>
        <source>warning.response_does_not_match_requested_protocol_update_the_program</source>
        <extracomment>English: Version headers error. Update this programm</extracomment>
        <translation>Fehler in den Versions-Headern. Bitte aktualisieren Sie das Programm</translation>
    </message>
</context>
<context>
    <name>tavero::VpnServerSelector</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Verbindung fehlgeschlagen. Prüfen Sie die Netzwerkverbindung.</translation>
    </message>
    <message>
        <source>warning.failed_get_information_about_vpn_servers</source>
        <extracomment>English: Unable to get information about VPN servers.</extracomment>
        <translation>Informationen zu den VPN-Servern konnten nicht abgerufen werden.</translation>
    </message>
</context>
</TS>
