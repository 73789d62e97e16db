<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en_US">
<context>
    <name>AboutProgrammWindowsWidget</name>
    <message>
        <source>action.check_update</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Buscar actualizaciones</translation>
    </message>
    <message>
        <source>label.copyright</source>
        <extracomment>English: Copyright</extracomment>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>label.release_date</source>
        <extracomment>English: Updated at</extracomment>
        <translation>Fecha de actualización</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version</extracomment>
        <translation>Versión</translation>
    </message>
    <message>
        <source>message.you_have_actual_version</source>
        <extracomment>English: You have the latest version</extracomment>
        <translation>Ya tiene la versión más reciente</translation>
    </message>
    <message>
        <source>title.about_widget_title</source>
        <extracomment>English: About</extracomment>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>title.you_have_actual_version</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Búsqueda de actualizaciones</translation>
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
        <translation>Algunas funciones pueden requerir que ejecute la aplicación como administrador.

La conexión Open VPN y la función «Kill Switch» no están disponibles sin derechos de administrador.

Si la aplicación se usa en un equipo remoto, conectarse mediante IKEv2 sin derechos de administrador desactivará el acceso remoto.</translation>
    </message>
</context>
<context>
    <name>Gui::ServerSelectionWidget</name>
    <message>
        <source>label.all_servers</source>
        <extracomment>English: All servers</extracomment>
        <translation>Todos los servidores</translation>
    </message>
    <message>
        <source>label.recommended_servers</source>
        <extracomment>English: Recommended</extracomment>
        <translation>Recomendados</translation>
    </message>
</context>
<context>
    <name>Gui::StatusWidget</name>
    <message>
        <source>action.change_server</source>
        <extracomment>English: Change server</extracomment>
        <translation>Cambiar de servidor</translation>
    </message>
    <message>
        <source>warning.change_protocol_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor connection</extracomment>
        <translation>Cambio automático de protocolo debido a una conexión deficiente</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection</extracomment>
        <translation>Error de conexión. Compruebe la conexión de red</translation>
    </message>
    <message>
        <source>warning.killswitch_triggered</source>
        <extracomment>English: Using Killswitch</extracomment>
        <translation>Kill Switch activo</translation>
    </message>
    <message>
        <source>warning.no_network</source>
        <extracomment>English: Offline</extracomment>
        <translation>Sin conexión</translation>
    </message>
    <message>
        <source>warning.problems_with_vpn_server_connect_to_another_server</source>
        <extracomment>English: Connection problem with VPN server &quot;%1&quot;. Recommended to change server</extracomment>
        <translation>Problema de conexión con el servidor VPN «%1». Le recomendamos cambiar de servidor</translation>
    </message>
    <message>
        <source>warning.protocol_was_changed_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor server connection</extracomment>
        <translation>Cambio automático de protocolo debido a una conexión deficiente con el servidor</translation>
    </message>
    <message>
        <source>warning.vpn_connection_was_reestablished</source>
        <extracomment>English: VPN connection is reestablished</extracomment>
        <translation>Se ha restablecido la conexión VPN</translation>
    </message>
</context>
<context>
    <name>LoginController</name>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Inicio de sesión</translation>
    </message>
</context>
<context>
    <name>LoginWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Inicio de sesión</translation>
    </message>
    <message>
        <source>label.login</source>
        <extracomment>English: Login</extracomment>
        <translation>Iniciar sesión</translation>
    </message>
    <message>
        <source>label.your_email</source>
        <extracomment>English: Your email</extracomment>
        <translation>Su correo electrónico</translation>
    </message>
    <message>
        <source>label.your_password</source>
        <extracomment>English: Your password</extracomment>
        <translation>Su contraseña</translation>
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
        <translation>Conectar</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Desconectar</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Salir</translation>
    </message>
    <message>
        <source>action.settings</source>
        <extracomment>English: Options</extracomment>
        <translation>Opciones</translation>
    </message>
    <message>
        <source>action.show_attachment</source>
        <extracomment>English: Show application</extracomment>
        <translation>Mostrar la aplicación</translation>
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
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>action.install</source>
        <extracomment>English: Install</extracomment>
        <translation>Instalar</translation>
    </message>
    <message>
        <source>action.install_later</source>
        <extracomment>English: Install later</extracomment>
        <translation>Instalar más tarde</translation>
    </message>
    <message>
        <source>label.new_version_detected_want_to_install</source>
        <extracomment>English: New version found! Want to update?</extracomment>
        <translation>¡Nueva versión disponible! ¿Desea actualizar?</translation>
    </message>
    <message>
        <source>label.warning_about_necesry_update</source>
        <extracomment>English: We recommend always installing the latest updates to ensure maximum security and performance of the application.</extracomment>
        <translation>Le recomendamos instalar siempre las últimas actualizaciones para garantizar la máxima seguridad y el mejor rendimiento de la aplicación.</translation>
    </message>
    <message>
        <source>label.whats_new</source>
        <extracomment>English: What&apos;s new?</extracomment>
        <translation>¿Qué hay de nuevo?</translation>
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
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>action.continue</source>
        <extracomment>English: Continue</extracomment>
        <translation>Continuar</translation>
    </message>
    <message>
        <source>action.no</source>
        <extracomment>English: No</extracomment>
        <translation>No</translation>
    </message>
    <message>
        <source>action.yes</source>
        <extracomment>English: YES</extracomment>
        <translation>SÍ</translation>
    </message>
    <message>
        <source>body.do_we_need_enable_internet_interfaces</source>
        <extracomment>English: Should network adapters be enabled?</extracomment>
        <translation>¿Desea activar los adaptadores de red?</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered</source>
        <extracomment>English: Killswitch is triggered.</extracomment>
        <translation>Se ha activado el Kill Switch.</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered_second_time</source>
        <extracomment>English: Killswitch reactivated</extracomment>
        <translation>El Kill Switch se ha vuelto a activar</translation>
    </message>
    <message>
        <source>label.auto_protocol</source>
        <extracomment>English: Automatic</extracomment>
        <translation>Automático</translation>
    </message>
    <message>
        <source>label.can_not_create_config_for_open_vpn</source>
        <extracomment>English: Failed to create configuration file for Open VPN</extracomment>
        <translation>No se pudo crear el archivo de configuración de Open VPN</translation>
    </message>
    <message>
        <source>label.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Conectado</translation>
    </message>
    <message>
        <source>label.connection_opens</source>
        <extracomment>English: Opening connection</extracomment>
        <translation>Estableciendo la conexión</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Desconectado</translation>
    </message>
    <message>
        <source>label.no_config_for_open_vpn</source>
        <extracomment>English: Failed to get configuration for Open VPN</extracomment>
        <translation>No se pudo obtener la configuración de Open VPN</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Desprotegido</translation>
    </message>
    <message>
        <source>label.program_is_already_running</source>
        <extracomment>English: Application &quot;%1&quot; is already running</extracomment>
        <translation>La aplicación «%1» ya se está ejecutando</translation>
    </message>
    <message>
        <source>label.protected</source>
        <extracomment>English: Protected</extracomment>
        <translation>Protegido</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Choose server</extracomment>
        <translation>Elegir servidor</translation>
    </message>
    <message>
        <source>title.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Conectado</translation>
    </message>
    <message>
        <source>title.connecting</source>
        <extracomment>English: Connecting...</extracomment>
        <translation>Conectando...</translation>
    </message>
    <message>
        <source>title.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Desconectado</translation>
    </message>
    <message>
        <source>title.exit_confirmation</source>
        <extracomment>English: Confirmation</extracomment>
        <translation>Confirmación</translation>
    </message>
    <message>
        <source>title.kill_switch_triggered</source>
        <extracomment>English: Attention</extracomment>
        <translation>Atención</translation>
    </message>
    <message>
        <source>title.settings_confirmation</source>
        <extracomment>English: Changing the settings</extracomment>
        <translation>Cambio de configuración</translation>
    </message>
    <message>
        <source>warning.authorization_failure_try_again</source>
        <extracomment>English: Authorization failed. Try to log in again</extracomment>
        <translation>Error de autenticación. Vuelva a iniciar sesión</translation>
    </message>
    <message>
        <source>warning.can_not_connect</source>
        <extracomment>English: Failed to connect via any protocols</extracomment>
        <translation>No se pudo conectar con ningún protocolo</translation>
    </message>
    <message>
        <source>warning.can_not_connect_by_protocol</source>
        <extracomment>English: Unable to connect using protocol %1</extracomment>
        <translation>No se pudo conectar con el protocolo %1</translation>
    </message>
    <message>
        <source>warning.can_not_open_vpn_check_is_admin_granted</source>
        <extracomment>English: Unable to create Open VPN connection. Check premissions. The program must be open as an administrator</extracomment>
        <translation>No se pudo crear la conexión Open VPN. Compruebe los permisos. El programa debe ejecutarse como administrador</translation>
    </message>
    <message>
        <source>warning.cannot_open_ikev2_connection</source>
        <extracomment>English: Connection failed for IKEv2</extracomment>
        <translation>Falló la conexión IKEv2</translation>
    </message>
    <message>
        <source>warning.cannot_open_l2tp_connection</source>
        <extracomment>English: Connection failed for L2TP</extracomment>
        <translation>Falló la conexión L2TP</translation>
    </message>
    <message>
        <source>warning.cannot_open_pptp_connection</source>
        <extracomment>English: Connection failed for PPTP</extracomment>
        <translation>Falló la conexión PPTP</translation>
    </message>
    <message>
        <source>warning.confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO?</extracomment>
        <translation>¿Seguro que desea salir de TAVERO?</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Error de conexión. Compruebe su conexión a Internet.</translation>
    </message>
    <message>
        <source>warning.could_not_break_vpn_connection</source>
        <extracomment>English: Disconnection of VPN failed</extracomment>
        <translation>Error al desconectar la VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_the_connection_manager_library</source>
        <extracomment>English: Unable to connect to the &apos;Connection Manager&apos; library (%1)</extracomment>
        <translation>No se pudo acceder a la biblioteca «Connection Manager» (%1)</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_vpn</source>
        <extracomment>English: Failed to connect VPN</extracomment>
        <translation>No se pudo conectar la VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_using_pptp</source>
        <extracomment>English: Unable to connect with PPTP protocol</extracomment>
        <translation>No se pudo conectar con el protocolo PPTP</translation>
    </message>
    <message>
        <source>warning.failed_to_disable_vpn_connection</source>
        <extracomment>English: Failed to disconnet VPN</extracomment>
        <translation>No se pudo desconectar la VPN</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_off_the_internet</source>
        <extracomment>English: Network disable failed</extracomment>
        <translation>No se pudo desactivar la red</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_on_the_internet</source>
        <extracomment>English: Network enable failed</extracomment>
        <translation>No se pudo activar la red</translation>
    </message>
    <message>
        <source>warning.found_rdp_ikev_can_disconnect_it_continue?</source>
        <extracomment>English: Running RDP service is detected. The remote desktop will not be available when using IKEv2. You can enter &quot;Settings&quot; to change VPN-protocol</extracomment>
        <translation>Se ha detectado un servicio RDP en ejecución. El escritorio remoto no estará disponible al usar IKEv2. Puede abrir «Configuración» para cambiar el protocolo VPN</translation>
    </message>
    <message>
        <source>warning.internet_connection_failed</source>
        <extracomment>English: Network connection error</extracomment>
        <translation>Error de conexión de red</translation>
    </message>
    <message>
        <source>warning.internet_shutdown_failed</source>
        <extracomment>English: Network disconnection error</extracomment>
        <translation>Error de desconexión de red</translation>
    </message>
    <message>
        <source>warning.l2tp_connection_fail</source>
        <extracomment>English: L2TP Connection failed</extracomment>
        <translation>Error en la conexión L2TP</translation>
    </message>
    <message>
        <source>warning.network_unavailable</source>
        <extracomment>English: Network unavailable</extracomment>
        <translation>Red no disponible</translation>
    </message>
    <message>
        <source>warning.no_server_available_in_country_select_another</source>
        <extracomment>English: No available servers in this country. Please select another one</extracomment>
        <translation>No hay servidores disponibles en este país. Seleccione otro país</translation>
    </message>
    <message>
        <source>warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.</source>
        <extracomment>English: No  specified protocols are supported by the selected server.</extracomment>
        <translation>El servidor seleccionado no admite ninguno de los protocolos indicados.</translation>
    </message>
    <message>
        <source>warning.open_vpn_connection_time_out</source>
        <extracomment>English: Connection timeout for Open VPN %1</extracomment>
        <translation>Se agotó el tiempo de conexión de Open VPN %1</translation>
    </message>
    <message>
        <source>warning.open_vpn_does_not_exists_try_another_protocol</source>
        <extracomment>English: Unable to connect with Open VPN. Try to another protocol</extracomment>
        <translation>No se pudo conectar con Open VPN. Pruebe otro protocolo</translation>
    </message>
    <message>
        <source>warning.open_vpn_running_fails_check_apps</source>
        <extracomment>English: Unable to run Open VPN connection process. Please check the installed software</extracomment>
        <translation>No se pudo iniciar el proceso de conexión de Open VPN. Compruebe el software instalado</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_data_rejected</source>
        <extracomment>English: The server&apos;s connection data were rejected as unsafe. Try another server or contact support</extracomment>
        <translation>Los datos de conexión del servidor se rechazaron por no ser seguros. Pruebe otro servidor o póngase en contacto con el soporte técnico</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_does_not_respond</source>
        <extracomment>English: OpenVPN server does not respond</extracomment>
        <translation>El servidor OpenVPN no responde</translation>
    </message>
    <message>
        <source>warning.program_is_already_running_want_to_continue</source>
        <extracomment>English: Application &quot;%1&quot; is already running. Please, close the application. Do you want to proceed?</extracomment>
        <translation>La aplicación «%1» ya se está ejecutando. Cierre la aplicación. ¿Desea continuar?</translation>
    </message>
    <message>
        <source>warning.selected_protocol_not_allowed_save_anyway?</source>
        <extracomment>English: The connection may be unsupported with the selected protocol. Are you sure to save?</extracomment>
        <translation>Es posible que la conexión no sea compatible con el protocolo seleccionado. ¿Seguro que desea guardar?</translation>
    </message>
    <message>
        <source>warning.server_is_unavailable_select_an_available_server</source>
        <extracomment>English: Server &quot;%1&quot; is unavalible. Select another one.</extracomment>
        <translation>El servidor «%1» no está disponible. Seleccione otro.</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_IKEv2_protocol</source>
        <extracomment>English: Unable to connect with IKEv2 protocol</extracomment>
        <translation>No se pudo conectar con el protocolo IKEv2</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_L2TP_protocol</source>
        <extracomment>English: Unable to connect with L2TP protocol</extracomment>
        <translation>No se pudo conectar con el protocolo L2TP</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_connected</source>
        <extracomment>English: VPN connected</extracomment>
        <translation>VPN conectada</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_disabled</source>
        <extracomment>English: VPN connection closed</extracomment>
        <translation>Conexión VPN cerrada</translation>
    </message>
    <message>
        <source>warning.vpn_is_connected_confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO? A VPN connection will be terminated</extracomment>
        <translation>¿Seguro que desea salir de TAVERO? La conexión VPN se cerrará</translation>
    </message>
    <message>
        <source>warning.want_reconnect_with_new_protocol_settings?</source>
        <extracomment>English: Do you like to reconnect using new (или updated) protocol settings?</extracomment>
        <translation>¿Desea volver a conectarse con la nueva configuración de protocolo?</translation>
    </message>
    <message>
        <source>warning.you_should_to_change_server</source>
        <extracomment>English: Try to select another server</extracomment>
        <translation>Intente seleccionar otro servidor</translation>
    </message>
</context>
<context>
    <name>ServerSelectionWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Server selection</extracomment>
        <translation>Selección de servidor</translation>
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
        <translation>Preguntas frecuentes:</translation>
    </message>
    <message>
        <source>Support/Contact:</source>
        <translation>Soporte/Contacto:</translation>
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
        <translation>Cerrar sesión</translation>
    </message>
    <message>
        <source>label.about_the_program</source>
        <extracomment>English: About</extracomment>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>label.account</source>
        <extracomment>English: Account</extracomment>
        <translation>Cuenta</translation>
    </message>
    <message>
        <source>label.account:</source>
        <extracomment>English: Account:</extracomment>
        <translation>Cuenta:</translation>
    </message>
    <message>
        <source>label.auto_terminates_connection_when_vpn_is_unavailable</source>
        <extracomment>English: Apllication will be acthomatically disconnected, when VPN is unavailable</extracomment>
        <translation>La conexión de red se cortará automáticamente si la VPN no está disponible</translation>
    </message>
    <message>
        <source>label.autoload</source>
        <extracomment>English: Autoload</extracomment>
        <translation>Inicio automático</translation>
    </message>
    <message>
        <source>label.automatic_connection</source>
        <extracomment>English: Automatic connection</extracomment>
        <translation>Conexión automática</translation>
    </message>
    <message>
        <source>label.basic_settings</source>
        <extracomment>English: Main settings:</extracomment>
        <translation>Configuración básica:</translation>
    </message>
    <message>
        <source>label.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>label.common</source>
        <extracomment>English: Common</extracomment>
        <translation>General</translation>
    </message>
    <message>
        <source>label.connect_to_the_last_selected_location</source>
        <extracomment>English: Connect to last selected location</extracomment>
        <translation>Conectar a la última ubicación seleccionada</translation>
    </message>
    <message>
        <source>label.connect_to_the_recommended_location</source>
        <extracomment>English: Connect to recommended location</extracomment>
        <translation>Conectar a la ubicación recomendada</translation>
    </message>
    <message>
        <source>label.connection_settings</source>
        <extracomment>English: Connection settings</extracomment>
        <translation>Configuración de conexión</translation>
    </message>
    <message>
        <source>label.de.language</source>
        <extracomment>English: German</extracomment>
        <translation>Alemán</translation>
    </message>
    <message>
        <source>label.email:</source>
        <extracomment>English: Email:</extracomment>
        <translation>Correo electrónico:</translation>
    </message>
    <message>
        <source>label.en.language</source>
        <extracomment>English: English</extracomment>
        <translation>Inglés</translation>
    </message>
    <message>
        <source>label.enable_killswitch</source>
        <extracomment>English: Enable Killswitch</extracomment>
        <translation>Activar Kill Switch</translation>
    </message>
    <message>
        <source>label.fr.language</source>
        <extracomment>English: French</extracomment>
        <translation>Francés</translation>
    </message>
    <message>
        <source>label.internet_killswitch</source>
        <extracomment>English: Network Killswitch</extracomment>
        <translation>Kill Switch de red</translation>
    </message>
    <message>
        <source>label.internet_killswitch:</source>
        <extracomment>English: Internet Killswitch:</extracomment>
        <translation>Kill Switch de Internet:</translation>
    </message>
    <message>
        <source>label.killswitch_is_unavailable_want_to_continue</source>
        <extracomment>English: Killswitch is unavalible now. Continue?</extracomment>
        <translation>El Kill Switch no está disponible en este momento. ¿Desea continuar?</translation>
    </message>
    <message>
        <source>label.main</source>
        <extracomment>English: Main</extracomment>
        <translation>Principal</translation>
    </message>
    <message>
        <source>label.ok</source>
        <extracomment>English: OK</extracomment>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>label.ru.language</source>
        <extracomment>English: Russian</extracomment>
        <translation>Ruso</translation>
    </message>
    <message>
        <source>label.run_at_login</source>
        <extracomment>English: Run at login</extracomment>
        <translation>Iniciar al iniciar sesión</translation>
    </message>
    <message>
        <source>label.run_on_windows_startup</source>
        <extracomment>English: Run with Windows</extracomment>
        <translation>Iniciar con Windows</translation>
    </message>
    <message>
        <source>label.selectLanguage</source>
        <extracomment>English: Language</extracomment>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>label.select_protocol</source>
        <extracomment>English: Protocol</extracomment>
        <translation>Protocolo</translation>
    </message>
    <message>
        <source>label.start_with_computer</source>
        <extracomment>English: Run at windows startup</extracomment>
        <translation>Ejecutar al iniciar Windows</translation>
    </message>
    <message>
        <source>label.value_mail</source>
        <extracomment>English: email</extracomment>
        <translation>correo electrónico</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version %1</extracomment>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>title.settings:</source>
        <extracomment>English: Settings:</extracomment>
        <translation>Configuración:</translation>
    </message>
</context>
<context>
    <name>SplashScreen</name>
    <message>
        <source>label.loading</source>
        <extracomment>English: Loading...</extracomment>
        <translation>Cargando...</translation>
    </message>
</context>
<context>
    <name>StatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulario</translation>
    </message>
    <message>
        <source>action.connect</source>
        <extracomment>English: Connect</extracomment>
        <translation>Conectar</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Desconectar</translation>
    </message>
    <message>
        <source>label.country_name</source>
        <extracomment>English: Country name</extracomment>
        <translation>Nombre del país</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Desconectado</translation>
    </message>
    <message>
        <source>label.ipaddress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label.no_available_servers</source>
        <extracomment>English: No available servers</extracomment>
        <translation>No hay servidores disponibles</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Desprotegido</translation>
    </message>
    <message>
        <source>label.select_the_desired_server:</source>
        <extracomment>English: Choose server:</extracomment>
        <translation>Elija un servidor:</translation>
    </message>
    <message>
        <source>label.status:</source>
        <extracomment>English: Status:</extracomment>
        <translation>Estado:</translation>
    </message>
    <message>
        <source>label.your_ip:</source>
        <extracomment>English: Your IP:</extracomment>
        <translation>Su IP:</translation>
    </message>
</context>
<context>
    <name>VpnPointItemDelegate</name>
    <message>
        <source>label.server</source>
        <extracomment>English: servers</extracomment>
        <translation>servidores</translation>
    </message>
</context>
<context>
    <name>tavero::ConnectionChain</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Error de conexión. Compruebe su conexión a Internet.</translation>
    </message>
</context>
<context>
    <name>tavero::VpnManager</name>
    <message>
        <source>label.not_determined</source>
        <extracomment>English: Is not defined</extracomment>
        <translation>Sin determinar</translation>
    </message>
    <message>
        <source>warning.can_not_authorize_try_again</source>
        <extracomment>English: Authorization failed. Try again later.</extracomment>
        <translation>Error de autenticación. Inténtelo de nuevo más tarde.</translation>
    </message>
    <message>
        <source>warning.can_not_get_connection_info</source>
        <extracomment>English: Unable to get information of connection.</extracomment>
        <translation>No se pudo obtener la información de la conexión.</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Error de conexión. Compruebe la conexión de red.</translation>
    </message>
    <message>
        <source>warning.failed_to_get_account_information</source>
        <extracomment>English: Failed to get information about account.</extracomment>
        <translation>No se pudo obtener la información de la cuenta.</translation>
    </message>
    <message>
        <source>warning.login_or_pass_are_incorrect</source>
        <extracomment>English: Wrong login or password.</extracomment>
        <translation>Usuario o contraseña incorrectos.</translation>
    </message>
    <message>
        <source>warning.response_does_not_match_requested_protocol_update_the_program</source>
        <extracomment>English: Version headers error. Update this programm</extracomment>
        <translation>Error en los encabezados de versión. Actualice el programa</translation>
    </message>
</context>
<context>
    <name>tavero::VpnServerSelector</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Error de conexión. Compruebe la conexión de red.</translation>
    </message>
    <message>
        <source>warning.failed_get_information_about_vpn_servers</source>
        <extracomment>English: Unable to get information about VPN servers.</extracomment>
        <translation>No se pudo obtener información sobre los servidores VPN.</translation>
    </message>
</context>
</TS>
