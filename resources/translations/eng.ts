<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name>AboutProgrammWindowsWidget</name>
    <message>
        <source>action.check_update</source>
        <translation>Check for update</translation>
    </message>
    <message>
        <source>label.copyright</source>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>label.release_date</source>
        <translation>Updated at</translation>
    </message>
    <message>
        <source>label.version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>message.you_have_actual_version</source>
        <translation>You have the latest version</translation>
    </message>
    <message>
        <source>title.about_widget_title</source>
        <translation>About</translation>
    </message>
    <message>
        <source>title.you_have_actual_version</source>
        <translation>Check for update</translation>
    </message>
</context>
<context>
    <name>Application</name>
    <message>
        <source>title.application_name</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>warning.running_without_admin_permissions</source>
        <translation>Сertain features may require you to run the application as administrator.

Open VPN connection and the “Killswitch” feature are not allowed without administrator rights.

If the application is used on a remote computer, connecting via IKEv2 without administrator rights will disable remote access.</translation>
    </message>
</context>
<context>
    <name>Gui::ServerSelectionWidget</name>
    <message>
        <source>label.all_servers</source>
        <translation>All servers</translation>
    </message>
    <message>
        <source>label.recommended_servers</source>
        <translation>Recommended</translation>
    </message>
</context>
<context>
    <name>Gui::StatusWidget</name>
    <message>
        <source>action.change_server</source>
        <translation>Change server</translation>
    </message>
    <message>
        <source>warning.change_protocol_due_the_quality_of_the_server</source>
        <translation>Auto change protocol because of poor connection</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <translation>Connection failed. Check network connection</translation>
    </message>
    <message>
        <source>warning.killswitch_triggered</source>
        <translation>Using Killswitch</translation>
    </message>
    <message>
        <source>warning.no_network</source>
        <translation>Offline</translation>
    </message>
    <message>
        <source>warning.problems_with_vpn_server_connect_to_another_server</source>
        <translation>Connection problem with VPN server &quot;%1&quot;. Recommended to change server</translation>
    </message>
    <message>
        <source>warning.protocol_was_changed_due_the_quality_of_the_server</source>
        <translation>Auto change protocol because of poor server connection</translation>
    </message>
    <message>
        <source>warning.vpn_connection_was_reestablished</source>
        <translation>VPN connection is reestablished</translation>
    </message>
</context>
<context>
    <name>LoginController</name>
    <message>
        <source>label.authorization</source>
        <translation>Authorization</translation>
    </message>
</context>
<context>
    <name>LoginWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>label.authorization</source>
        <translation>Authorization</translation>
    </message>
    <message>
        <source>label.login</source>
        <translation>Login</translation>
    </message>
    <message>
        <source>label.your_email</source>
        <translation>Your email</translation>
    </message>
    <message>
        <source>label.your_password</source>
        <translation>Your password</translation>
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
        <translation>Connect</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <translation>Disconnect</translation>
    </message>
    <message>
        <source>action.exit</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>action.settings</source>
        <translation>Options</translation>
    </message>
    <message>
        <source>action.show_attachment</source>
        <translation>Show application</translation>
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
        <translation>Cancel</translation>
    </message>
    <message>
        <source>action.install</source>
        <translation>Install</translation>
    </message>
    <message>
        <source>action.install_later</source>
        <translation>Install later</translation>
    </message>
    <message>
        <source>label.new_version_detected_want_to_install</source>
        <translation>New version found! Want to update?</translation>
    </message>
    <message>
        <source>label.warning_about_necesry_update</source>
        <translation>We recommend always installing the latest updates to ensure maximum security and performance of the application.</translation>
    </message>
    <message>
        <source>label.whats_new</source>
        <translation>What&apos;s new?</translation>
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
        <translation>Cancel</translation>
    </message>
    <message>
        <source>action.continue</source>
        <translation>Continue</translation>
    </message>
    <message>
        <source>action.no</source>
        <translation>No</translation>
    </message>
    <message>
        <source>action.yes</source>
        <translation>YES</translation>
    </message>
    <message>
        <source>body.do_we_need_enable_internet_interfaces</source>
        <translation>Should network adapters be enabled?</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered</source>
        <translation>Killswitch is triggered.</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered_second_time</source>
        <translation>Killswitch reactivated</translation>
    </message>
    <message>
        <source>label.auto_protocol</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>label.can_not_create_config_for_open_vpn</source>
        <translation>Failed to create configuration file for Open VPN</translation>
    </message>
    <message>
        <source>label.connected</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>label.connection_opens</source>
        <translation>Opening connection</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>label.no_config_for_open_vpn</source>
        <translation>Failed to get configuration for Open VPN</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <translation>Unprotected</translation>
    </message>
    <message>
        <source>label.program_is_already_running</source>
        <translation>Application &quot;%1&quot; is already running</translation>
    </message>
    <message>
        <source>label.protected</source>
        <translation>Protected</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <translation>Choose server</translation>
    </message>
    <message>
        <source>title.connected</source>
        <translation>Connected</translation>
    </message>
    <message>
        <source>title.connecting</source>
        <translation>Connecting...</translation>
    </message>
    <message>
        <source>title.disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>title.exit_confirmation</source>
        <translation>Confirmation</translation>
    </message>
    <message>
        <source>title.kill_switch_triggered</source>
        <translation>Attention</translation>
    </message>
    <message>
        <source>title.settings_confirmation</source>
        <translation>Changing the settings</translation>
    </message>
    <message>
        <source>warning.authorization_failure_try_again</source>
        <translation>Authorization failed. Try to log in again</translation>
    </message>
    <message>
        <source>warning.can_not_connect</source>
        <translation>Failed to connect via any protocols</translation>
    </message>
    <message>
        <source>warning.can_not_connect_by_protocol</source>
        <translation>Unable to connect using protocol %1</translation>
    </message>
    <message>
        <source>warning.can_not_open_vpn_check_is_admin_granted</source>
        <translation>Unable to create Open VPN connection. Check premissions. The program must be open as an administrator</translation>
    </message>
    <message>
        <source>warning.cannot_open_ikev2_connection</source>
        <translation>Connection failed for IKEv2</translation>
    </message>
    <message>
        <source>warning.cannot_open_l2tp_connection</source>
        <translation>Connection failed for L2TP</translation>
    </message>
    <message>
        <source>warning.cannot_open_pptp_connection</source>
        <translation>Connection failed for PPTP</translation>
    </message>
    <message>
        <source>warning.confirm_exit</source>
        <translation>Do you really want to stop TAVERO?</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <translation>Connection failed. Check internet connection.</translation>
    </message>
    <message>
        <source>warning.could_not_break_vpn_connection</source>
        <translation>Disconnection of VPN failed</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_the_connection_manager_library</source>
        <translation>Unable to connect to the &apos;Connection Manager&apos; library (%1)</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_vpn</source>
        <translation>Failed to connect VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_using_pptp</source>
        <translation>Unable to connect with PPTP protocol</translation>
    </message>
    <message>
        <source>warning.failed_to_disable_vpn_connection</source>
        <translation>Failed to disconnet VPN</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_off_the_internet</source>
        <translation>Network disable failed</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_on_the_internet</source>
        <translation>Network enable failed</translation>
    </message>
    <message>
        <source>warning.found_rdp_ikev_can_disconnect_it_continue?</source>
        <translation>Running RDP service is detected. The remote desktop will not be available when using IKEv2. You can enter &quot;Settings&quot; to change VPN-protocol</translation>
    </message>
    <message>
        <source>warning.internet_connection_failed</source>
        <translation>Network connection error</translation>
    </message>
    <message>
        <source>warning.internet_shutdown_failed</source>
        <translation>Network disconnection error</translation>
    </message>
    <message>
        <source>warning.l2tp_connection_fail</source>
        <translation>L2TP Connection failed</translation>
    </message>
    <message>
        <source>warning.network_unavailable</source>
        <translation>Network unavailable</translation>
    </message>
    <message>
        <source>warning.no_server_available_in_country_select_another</source>
        <translation>No available servers in this country. Please select another one</translation>
    </message>
    <message>
        <source>warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.</source>
        <translation>No  specified protocols are supported by the selected server.</translation>
    </message>
    <message>
        <source>warning.open_vpn_connection_time_out</source>
        <translation>Connection timeout for Open VPN %1</translation>
    </message>
    <message>
        <source>warning.open_vpn_does_not_exists_try_another_protocol</source>
        <translation>Unable to connect with Open VPN. Try to another protocol</translation>
    </message>
    <message>
        <source>warning.open_vpn_running_fails_check_apps</source>
        <translation>Unable to run Open VPN connection process. Please check the installed software</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_data_rejected</source>
        <translation>The server&apos;s connection data were rejected as unsafe. Try another server or contact support</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_does_not_respond</source>
        <translation>OpenVPN server does not respond</translation>
    </message>
    <message>
        <source>warning.program_is_already_running_want_to_continue</source>
        <translation>Application &quot;%1&quot; is already running. Please, close the application. Do you want to proceed?</translation>
    </message>
    <message>
        <source>warning.selected_protocol_not_allowed_save_anyway?</source>
        <translation>The connection may be unsupported with the selected protocol. Are you sure to save?</translation>
    </message>
    <message>
        <source>warning.server_is_unavailable_select_an_available_server</source>
        <translation>Server &quot;%1&quot; is unavalible. Select another one.</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_IKEv2_protocol</source>
        <translation>Unable to connect with IKEv2 protocol</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_L2TP_protocol</source>
        <translation>Unable to connect with L2TP protocol</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_connected</source>
        <translation>VPN connected</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_disabled</source>
        <translation>VPN connection closed</translation>
    </message>
    <message>
        <source>warning.vpn_is_connected_confirm_exit</source>
        <translation>Do you really want to stop TAVERO? A VPN connection will be terminated</translation>
    </message>
    <message>
        <source>warning.want_reconnect_with_new_protocol_settings?</source>
        <translation>Do you like to reconnect using new (или updated) protocol settings?</translation>
    </message>
    <message>
        <source>warning.you_should_to_change_server</source>
        <translation>Try to select another server</translation>
    </message>
</context>
<context>
    <name>ServerSelectionWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <translation>Server selection</translation>
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
        <translation>Support/Contact:</translation>
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
        <translation>Exit</translation>
    </message>
    <message>
        <source>label.about_the_program</source>
        <translation>About</translation>
    </message>
    <message>
        <source>label.account</source>
        <translation>Account</translation>
    </message>
    <message>
        <source>label.account:</source>
        <translation>Account:</translation>
    </message>
    <message>
        <source>label.auto_terminates_connection_when_vpn_is_unavailable</source>
        <translation>Apllication will be acthomatically disconnected, when VPN is unavailable</translation>
    </message>
    <message>
        <source>label.autoload</source>
        <translation>Autoload</translation>
    </message>
    <message>
        <source>label.automatic_connection</source>
        <translation>Automatic connection</translation>
    </message>
    <message>
        <source>label.basic_settings</source>
        <translation>Main settings:</translation>
    </message>
    <message>
        <source>label.cancel</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>label.common</source>
        <translation>Common</translation>
    </message>
    <message>
        <source>label.connect_to_the_last_selected_location</source>
        <translation>Connect to last selected location</translation>
    </message>
    <message>
        <source>label.connect_to_the_recommended_location</source>
        <translation>Connect to recommended location</translation>
    </message>
    <message>
        <source>label.connection_settings</source>
        <translation>Connection settings</translation>
    </message>
    <message>
        <source>label.de.language</source>
        <translation>German</translation>
    </message>
    <message>
        <source>label.email:</source>
        <translation>Email:</translation>
    </message>
    <message>
        <source>label.en.language</source>
        <translation>English</translation>
    </message>
    <message>
        <source>label.enable_killswitch</source>
        <translation>Enable Killswitch</translation>
    </message>
    <message>
        <source>label.fr.language</source>
        <translation>French</translation>
    </message>
    <message>
        <source>label.internet_killswitch</source>
        <translation>Network Killswitch</translation>
    </message>
    <message>
        <source>label.internet_killswitch:</source>
        <translation>Internet Killswitch:</translation>
    </message>
    <message>
        <source>label.killswitch_is_unavailable_want_to_continue</source>
        <translation>Killswitch is unavalible now. Continue?</translation>
    </message>
    <message>
        <source>label.main</source>
        <translation>Main</translation>
    </message>
    <message>
        <source>label.ok</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>label.ru.language</source>
        <translation>Russian</translation>
    </message>
    <message>
        <source>label.run_at_login</source>
        <translation>Run at login</translation>
    </message>
    <message>
        <source>label.run_on_windows_startup</source>
        <translation>Run with Windows</translation>
    </message>
    <message>
        <source>label.selectLanguage</source>
        <translation>Language</translation>
    </message>
    <message>
        <source>label.select_protocol</source>
        <translation>Protocol</translation>
    </message>
    <message>
        <source>label.start_with_computer</source>
        <translation>Run at windows startup</translation>
    </message>
    <message>
        <source>label.value_mail</source>
        <translation>email</translation>
    </message>
    <message>
        <source>label.version</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>title.settings:</source>
        <translation>Settings:</translation>
    </message>
</context>
<context>
    <name>SplashScreen</name>
    <message>
        <source>label.loading</source>
        <translation>Loading...</translation>
    </message>
</context>
<context>
    <name>StatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Form</translation>
    </message>
    <message>
        <source>action.connect</source>
        <translation>Connect</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <translation>Disconnect</translation>
    </message>
    <message>
        <source>label.country_name</source>
        <translation>Country name</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <translation>Disconnected</translation>
    </message>
    <message>
        <source>label.ipaddress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label.no_available_servers</source>
        <translation>No available servers</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <translation>Unprotected</translation>
    </message>
    <message>
        <source>label.select_the_desired_server:</source>
        <translation>Choose server:</translation>
    </message>
    <message>
        <source>label.status:</source>
        <translation>Status:</translation>
    </message>
    <message>
        <source>label.your_ip:</source>
        <translation>Your IP:</translation>
    </message>
</context>
<context>
    <name>VpnPointItemDelegate</name>
    <message>
        <source>label.server</source>
        <translation>servers</translation>
    </message>
</context>
<context>
    <name>tavero::ConnectionChain</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <translation>Connection failed. Check internet connection.</translation>
    </message>
</context>
<context>
    <name>tavero::VpnManager</name>
    <message>
        <source>label.not_determined</source>
        <translation>Is not defined</translation>
    </message>
    <message>
        <source>warning.can_not_authorize_try_again</source>
        <translation>Authorization failed. Try again later.</translation>
    </message>
    <message>
        <source>warning.can_not_get_connection_info</source>
        <translation>Unable to get information of connection.</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <translation>Connection failed. Check network connection.</translation>
    </message>
    <message>
        <source>warning.failed_to_get_account_information</source>
        <translation>Failed to get information about account.</translation>
    </message>
    <message>
        <source>warning.login_or_pass_are_incorrect</source>
        <translation>Wrong login or password.</translation>
    </message>
    <message>
        <source>warning.response_does_not_match_requested_protocol_update_the_program</source>
        <translation>Version headers error. Update this programm</translation>
    </message>
</context>
<context>
    <name>tavero::VpnServerSelector</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <translation>Connection failed. Check network connection.</translation>
    </message>
    <message>
        <source>warning.failed_get_information_about_vpn_servers</source>
        <translation>Unable to get information about VPN servers.</translation>
    </message>
</context>
</TS>
