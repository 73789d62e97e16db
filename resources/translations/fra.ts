<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en_US">
<context>
    <name>AboutProgrammWindowsWidget</name>
    <message>
        <source>action.check_update</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Rechercher une mise à jour</translation>
    </message>
    <message>
        <source>label.copyright</source>
        <extracomment>English: Copyright</extracomment>
        <translation>Copyright</translation>
    </message>
    <message>
        <source>label.release_date</source>
        <extracomment>English: Updated at</extracomment>
        <translation>Date de mise à jour</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version</extracomment>
        <translation>Version</translation>
    </message>
    <message>
        <source>message.you_have_actual_version</source>
        <extracomment>English: You have the latest version</extracomment>
        <translation>Vous disposez de la dernière version</translation>
    </message>
    <message>
        <source>title.about_widget_title</source>
        <extracomment>English: About</extracomment>
        <translation>À propos</translation>
    </message>
    <message>
        <source>title.you_have_actual_version</source>
        <extracomment>English: Check for update</extracomment>
        <translation>Recherche de mises à jour</translation>
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
        <translation>Certaines fonctionnalités peuvent nécessiter d&apos;exécuter l&apos;application en tant qu&apos;administrateur.

La connexion Open VPN et la fonction «&#xa0;coupe-circuit&#xa0;» ne sont pas disponibles sans droits d&apos;administrateur.

Si l&apos;application est utilisée sur un ordinateur distant, une connexion IKEv2 sans droits d&apos;administrateur coupera l&apos;accès à distance.</translation>
    </message>
</context>
<context>
    <name>Gui::ServerSelectionWidget</name>
    <message>
        <source>label.all_servers</source>
        <extracomment>English: All servers</extracomment>
        <translation>Tous les serveurs</translation>
    </message>
    <message>
        <source>label.recommended_servers</source>
        <extracomment>English: Recommended</extracomment>
        <translation>Recommandés</translation>
    </message>
</context>
<context>
    <name>Gui::StatusWidget</name>
    <message>
        <source>action.change_server</source>
        <extracomment>English: Change server</extracomment>
        <translation>Changer de serveur</translation>
    </message>
    <message>
        <source>warning.change_protocol_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor connection</extracomment>
        <translation>Changement automatique de protocole en raison d&apos;une mauvaise connexion</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection</extracomment>
        <translation>Échec de la connexion. Vérifiez la connexion réseau</translation>
    </message>
    <message>
        <source>warning.killswitch_triggered</source>
        <extracomment>English: Using Killswitch</extracomment>
        <translation>Coupe-circuit actif</translation>
    </message>
    <message>
        <source>warning.no_network</source>
        <extracomment>English: Offline</extracomment>
        <translation>Hors ligne</translation>
    </message>
    <message>
        <source>warning.problems_with_vpn_server_connect_to_another_server</source>
        <extracomment>English: Connection problem with VPN server &quot;%1&quot;. Recommended to change server</extracomment>
        <translation>Problème de connexion au serveur VPN «&#xa0;%1&#xa0;». Nous vous recommandons de changer de serveur</translation>
    </message>
    <message>
        <source>warning.protocol_was_changed_due_the_quality_of_the_server</source>
        <extracomment>English: Auto change protocol because of poor server connection</extracomment>
        <translation>Changement automatique de protocole en raison d&apos;une mauvaise connexion au serveur</translation>
    </message>
    <message>
        <source>warning.vpn_connection_was_reestablished</source>
        <extracomment>English: VPN connection is reestablished</extracomment>
        <translation>La connexion VPN a été rétablie</translation>
    </message>
</context>
<context>
    <name>LoginController</name>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Authentification</translation>
    </message>
</context>
<context>
    <name>LoginWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>label.authorization</source>
        <extracomment>English: Authorization</extracomment>
        <translation>Authentification</translation>
    </message>
    <message>
        <source>label.login</source>
        <extracomment>English: Login</extracomment>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>label.your_email</source>
        <extracomment>English: Your email</extracomment>
        <translation>Votre adresse e-mail</translation>
    </message>
    <message>
        <source>label.your_password</source>
        <extracomment>English: Your password</extracomment>
        <translation>Votre mot de passe</translation>
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
        <translation>Connecter</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Déconnecter</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>action.settings</source>
        <extracomment>English: Options</extracomment>
        <translation>Options</translation>
    </message>
    <message>
        <source>action.show_attachment</source>
        <extracomment>English: Show application</extracomment>
        <translation>Afficher l&apos;application</translation>
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
        <translation>Annuler</translation>
    </message>
    <message>
        <source>action.install</source>
        <extracomment>English: Install</extracomment>
        <translation>Installer</translation>
    </message>
    <message>
        <source>action.install_later</source>
        <extracomment>English: Install later</extracomment>
        <translation>Installer plus tard</translation>
    </message>
    <message>
        <source>label.new_version_detected_want_to_install</source>
        <extracomment>English: New version found! Want to update?</extracomment>
        <translation>Nouvelle version disponible&#xa0;! Voulez-vous mettre à jour&#xa0;?</translation>
    </message>
    <message>
        <source>label.warning_about_necesry_update</source>
        <extracomment>English: We recommend always installing the latest updates to ensure maximum security and performance of the application.</extracomment>
        <translation>Nous vous recommandons de toujours installer les dernières mises à jour pour garantir une sécurité et des performances optimales de l&apos;application.</translation>
    </message>
    <message>
        <source>label.whats_new</source>
        <extracomment>English: What&apos;s new?</extracomment>
        <translation>Quoi de neuf&#xa0;?</translation>
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
        <translation>Annuler</translation>
    </message>
    <message>
        <source>action.continue</source>
        <extracomment>English: Continue</extracomment>
        <translation>Continuer</translation>
    </message>
    <message>
        <source>action.no</source>
        <extracomment>English: No</extracomment>
        <translation>Non</translation>
    </message>
    <message>
        <source>action.yes</source>
        <extracomment>English: YES</extracomment>
        <translation>OUI</translation>
    </message>
    <message>
        <source>body.do_we_need_enable_internet_interfaces</source>
        <extracomment>English: Should network adapters be enabled?</extracomment>
        <translation>Voulez-vous activer les cartes réseau&#xa0;?</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered</source>
        <extracomment>English: Killswitch is triggered.</extracomment>
        <translation>Le coupe-circuit s&apos;est déclenché.</translation>
    </message>
    <message>
        <source>body.kill_switch_triggered_second_time</source>
        <extracomment>English: Killswitch reactivated</extracomment>
        <translation>Le coupe-circuit s&apos;est de nouveau déclenché</translation>
    </message>
    <message>
        <source>label.auto_protocol</source>
        <extracomment>English: Automatic</extracomment>
        <translation>Automatique</translation>
    </message>
    <message>
        <source>label.can_not_create_config_for_open_vpn</source>
        <extracomment>English: Failed to create configuration file for Open VPN</extracomment>
        <translation>Impossible de créer le fichier de configuration Open VPN</translation>
    </message>
    <message>
        <source>label.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>label.connection_opens</source>
        <extracomment>English: Opening connection</extracomment>
        <translation>Ouverture de la connexion</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>label.no_config_for_open_vpn</source>
        <extracomment>English: Failed to get configuration for Open VPN</extracomment>
        <translation>Impossible d&apos;obtenir la configuration Open VPN</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Non protégé</translation>
    </message>
    <message>
        <source>label.program_is_already_running</source>
        <extracomment>English: Application &quot;%1&quot; is already running</extracomment>
        <translation>L&apos;application «&#xa0;%1&#xa0;» est déjà en cours d&apos;exécution</translation>
    </message>
    <message>
        <source>label.protected</source>
        <extracomment>English: Protected</extracomment>
        <translation>Protégé</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Choose server</extracomment>
        <translation>Choisir un serveur</translation>
    </message>
    <message>
        <source>title.connected</source>
        <extracomment>English: Connected</extracomment>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>title.connecting</source>
        <extracomment>English: Connecting...</extracomment>
        <translation>Connexion en cours...</translation>
    </message>
    <message>
        <source>title.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>title.exit_confirmation</source>
        <extracomment>English: Confirmation</extracomment>
        <translation>Confirmation</translation>
    </message>
    <message>
        <source>title.kill_switch_triggered</source>
        <extracomment>English: Attention</extracomment>
        <translation>Attention</translation>
    </message>
    <message>
        <source>title.settings_confirmation</source>
        <extracomment>English: Changing the settings</extracomment>
        <translation>Modification des paramètres</translation>
    </message>
    <message>
        <source>warning.authorization_failure_try_again</source>
        <extracomment>English: Authorization failed. Try to log in again</extracomment>
        <translation>Échec de l&apos;authentification. Veuillez vous reconnecter</translation>
    </message>
    <message>
        <source>warning.can_not_connect</source>
        <extracomment>English: Failed to connect via any protocols</extracomment>
        <translation>La connexion a échoué avec tous les protocoles</translation>
    </message>
    <message>
        <source>warning.can_not_connect_by_protocol</source>
        <extracomment>English: Unable to connect using protocol %1</extracomment>
        <translation>Impossible de se connecter avec le protocole %1</translation>
    </message>
    <message>
        <source>warning.can_not_open_vpn_check_is_admin_granted</source>
        <extracomment>English: Unable to create Open VPN connection. Check premissions. The program must be open as an administrator</extracomment>
        <translation>Impossible de créer la connexion Open VPN. Vérifiez les autorisations. Le programme doit être exécuté en tant qu&apos;administrateur</translation>
    </message>
    <message>
        <source>warning.cannot_open_ikev2_connection</source>
        <extracomment>English: Connection failed for IKEv2</extracomment>
        <translation>La connexion IKEv2 a échoué</translation>
    </message>
    <message>
        <source>warning.cannot_open_l2tp_connection</source>
        <extracomment>English: Connection failed for L2TP</extracomment>
        <translation>La connexion L2TP a échoué</translation>
    </message>
    <message>
        <source>warning.cannot_open_pptp_connection</source>
        <extracomment>English: Connection failed for PPTP</extracomment>
        <translation>La connexion PPTP a échoué</translation>
    </message>
    <message>
        <source>warning.confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO?</extracomment>
        <translation>Voulez-vous vraiment quitter TAVERO&#xa0;?</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Échec de la connexion. Vérifiez votre connexion Internet.</translation>
    </message>
    <message>
        <source>warning.could_not_break_vpn_connection</source>
        <extracomment>English: Disconnection of VPN failed</extracomment>
        <translation>Échec de la déconnexion du VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_the_connection_manager_library</source>
        <extracomment>English: Unable to connect to the &apos;Connection Manager&apos; library (%1)</extracomment>
        <translation>Impossible d&apos;accéder à la bibliothèque «&#xa0;Connection Manager&#xa0;» (%1)</translation>
    </message>
    <message>
        <source>warning.could_not_connect_to_vpn</source>
        <extracomment>English: Failed to connect VPN</extracomment>
        <translation>Échec de la connexion VPN</translation>
    </message>
    <message>
        <source>warning.could_not_connect_using_pptp</source>
        <extracomment>English: Unable to connect with PPTP protocol</extracomment>
        <translation>Impossible de se connecter avec le protocole PPTP</translation>
    </message>
    <message>
        <source>warning.failed_to_disable_vpn_connection</source>
        <extracomment>English: Failed to disconnet VPN</extracomment>
        <translation>Impossible de déconnecter le VPN</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_off_the_internet</source>
        <extracomment>English: Network disable failed</extracomment>
        <translation>Échec de la désactivation du réseau</translation>
    </message>
    <message>
        <source>warning.failed_to_turn_on_the_internet</source>
        <extracomment>English: Network enable failed</extracomment>
        <translation>Échec de l&apos;activation du réseau</translation>
    </message>
    <message>
        <source>warning.found_rdp_ikev_can_disconnect_it_continue?</source>
        <extracomment>English: Running RDP service is detected. The remote desktop will not be available when using IKEv2. You can enter &quot;Settings&quot; to change VPN-protocol</extracomment>
        <translation>Un service RDP actif a été détecté. Le bureau à distance ne sera pas disponible avec IKEv2. Vous pouvez ouvrir «&#xa0;Paramètres&#xa0;» pour changer de protocole VPN</translation>
    </message>
    <message>
        <source>warning.internet_connection_failed</source>
        <extracomment>English: Network connection error</extracomment>
        <translation>Erreur de connexion réseau</translation>
    </message>
    <message>
        <source>warning.internet_shutdown_failed</source>
        <extracomment>English: Network disconnection error</extracomment>
        <translation>Erreur de déconnexion réseau</translation>
    </message>
    <message>
        <source>warning.l2tp_connection_fail</source>
        <extracomment>English: L2TP Connection failed</extracomment>
        <translation>Échec de la connexion L2TP</translation>
    </message>
    <message>
        <source>warning.network_unavailable</source>
        <extracomment>English: Network unavailable</extracomment>
        <translation>Réseau indisponible</translation>
    </message>
    <message>
        <source>warning.no_server_available_in_country_select_another</source>
        <extracomment>English: No available servers in this country. Please select another one</extracomment>
        <translation>Aucun serveur disponible dans ce pays. Veuillez choisir un autre pays</translation>
    </message>
    <message>
        <source>warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.</source>
        <extracomment>English: No  specified protocols are supported by the selected server.</extracomment>
        <translation>Aucun des protocoles indiqués n&apos;est pris en charge par le serveur sélectionné.</translation>
    </message>
    <message>
        <source>warning.open_vpn_connection_time_out</source>
        <extracomment>English: Connection timeout for Open VPN %1</extracomment>
        <translation>Délai de connexion dépassé pour Open VPN %1</translation>
    </message>
    <message>
        <source>warning.open_vpn_does_not_exists_try_another_protocol</source>
        <extracomment>English: Unable to connect with Open VPN. Try to another protocol</extracomment>
        <translation>Impossible de se connecter avec Open VPN. Essayez un autre protocole</translation>
    </message>
    <message>
        <source>warning.open_vpn_running_fails_check_apps</source>
        <extracomment>English: Unable to run Open VPN connection process. Please check the installed software</extracomment>
        <translation>Impossible de lancer le processus de connexion Open VPN. Veuillez vérifier les logiciels installés</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_data_rejected</source>
        <extracomment>English: The server&apos;s connection data were rejected as unsafe. Try another server or contact support</extracomment>
        <translation>Les données de connexion du serveur ont été refusées, car elles ne sont pas sûres. Essayez un autre serveur ou contactez l&apos;assistance</translation>
    </message>
    <message>
        <source>warning.open_vpn_server_does_not_respond</source>
        <extracomment>English: OpenVPN server does not respond</extracomment>
        <translation>Le serveur OpenVPN ne répond pas</translation>
    </message>
    <message>
        <source>warning.program_is_already_running_want_to_continue</source>
        <extracomment>English: Application &quot;%1&quot; is already running. Please, close the application. Do you want to proceed?</extracomment>
        <translation>L&apos;application «&#xa0;%1&#xa0;» est déjà en cours d&apos;exécution. Veuillez fermer l&apos;application. Voulez-vous continuer&#xa0;?</translation>
    </message>
    <message>
        <source>warning.selected_protocol_not_allowed_save_anyway?</source>
        <extracomment>English: The connection may be unsupported with the selected protocol. Are you sure to save?</extracomment>
        <translation>La connexion risque de ne pas être prise en charge avec le protocole sélectionné. Voulez-vous vraiment enregistrer&#xa0;?</translation>
    </message>
    <message>
        <source>warning.server_is_unavailable_select_an_available_server</source>
        <extracomment>English: Server &quot;%1&quot; is unavalible. Select another one.</extracomment>
        <translation>Le serveur «&#xa0;%1&#xa0;» est indisponible. Choisissez-en un autre.</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_IKEv2_protocol</source>
        <extracomment>English: Unable to connect with IKEv2 protocol</extracomment>
        <translation>Impossible de se connecter avec le protocole IKEv2</translation>
    </message>
    <message>
        <source>warning.unable_to_connect_using_L2TP_protocol</source>
        <extracomment>English: Unable to connect with L2TP protocol</extracomment>
        <translation>Impossible de se connecter avec le protocole L2TP</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_connected</source>
        <extracomment>English: VPN connected</extracomment>
        <translation>VPN connecté</translation>
    </message>
    <message>
        <source>warning.vpn_connection_is_disabled</source>
        <extracomment>English: VPN connection closed</extracomment>
        <translation>Connexion VPN fermée</translation>
    </message>
    <message>
        <source>warning.vpn_is_connected_confirm_exit</source>
        <extracomment>English: Do you really want to stop TAVERO? A VPN connection will be terminated</extracomment>
        <translation>Voulez-vous vraiment quitter TAVERO&#xa0;? La connexion VPN sera interrompue</translation>
    </message>
    <message>
        <source>warning.want_reconnect_with_new_protocol_settings?</source>
        <extracomment>English: Do you like to reconnect using new (или updated) protocol settings?</extracomment>
        <translation>Voulez-vous vous reconnecter avec les nouveaux paramètres de protocole&#xa0;?</translation>
    </message>
    <message>
        <source>warning.you_should_to_change_server</source>
        <extracomment>English: Try to select another server</extracomment>
        <translation>Essayez de choisir un autre serveur</translation>
    </message>
</context>
<context>
    <name>ServerSelectionWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>label.server_selection</source>
        <extracomment>English: Server selection</extracomment>
        <translation>Choix du serveur</translation>
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
        <translation>FAQ&#xa0;:</translation>
    </message>
    <message>
        <source>Support/Contact:</source>
        <translation>Assistance/Contact&#xa0;:</translation>
    </message>
    <message>
        <source>TAVERO</source>
        <translation>TAVERO</translation>
    </message>
    <message>
        <source>TAVERO:</source>
        <translation>TAVERO&#xa0;:</translation>
    </message>
    <message>
        <source>action.exit</source>
        <extracomment>English: Exit</extracomment>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>label.about_the_program</source>
        <extracomment>English: About</extracomment>
        <translation>À propos</translation>
    </message>
    <message>
        <source>label.account</source>
        <extracomment>English: Account</extracomment>
        <translation>Compte</translation>
    </message>
    <message>
        <source>label.account:</source>
        <extracomment>English: Account:</extracomment>
        <translation>Compte&#xa0;:</translation>
    </message>
    <message>
        <source>label.auto_terminates_connection_when_vpn_is_unavailable</source>
        <extracomment>English: Apllication will be acthomatically disconnected, when VPN is unavailable</extracomment>
        <translation>La connexion réseau sera automatiquement coupée si le VPN n&apos;est pas disponible</translation>
    </message>
    <message>
        <source>label.autoload</source>
        <extracomment>English: Autoload</extracomment>
        <translation>Démarrage automatique</translation>
    </message>
    <message>
        <source>label.automatic_connection</source>
        <extracomment>English: Automatic connection</extracomment>
        <translation>Connexion automatique</translation>
    </message>
    <message>
        <source>label.basic_settings</source>
        <extracomment>English: Main settings:</extracomment>
        <translation>Paramètres principaux&#xa0;:</translation>
    </message>
    <message>
        <source>label.cancel</source>
        <extracomment>English: Cancel</extracomment>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>label.common</source>
        <extracomment>English: Common</extracomment>
        <translation>Général</translation>
    </message>
    <message>
        <source>label.connect_to_the_last_selected_location</source>
        <extracomment>English: Connect to last selected location</extracomment>
        <translation>Se connecter au dernier emplacement choisi</translation>
    </message>
    <message>
        <source>label.connect_to_the_recommended_location</source>
        <extracomment>English: Connect to recommended location</extracomment>
        <translation>Se connecter à l&apos;emplacement recommandé</translation>
    </message>
    <message>
        <source>label.connection_settings</source>
        <extracomment>English: Connection settings</extracomment>
        <translation>Paramètres de connexion</translation>
    </message>
    <message>
        <source>label.de.language</source>
        <extracomment>English: German</extracomment>
        <translation>Allemand</translation>
    </message>
    <message>
        <source>label.email:</source>
        <extracomment>English: Email:</extracomment>
        <translation>E-mail&#xa0;:</translation>
    </message>
    <message>
        <source>label.en.language</source>
        <extracomment>English: English</extracomment>
        <translation>Anglais</translation>
    </message>
    <message>
        <source>label.enable_killswitch</source>
        <extracomment>English: Enable Killswitch</extracomment>
        <translation>Activer le coupe-circuit</translation>
    </message>
    <message>
        <source>label.fr.language</source>
        <extracomment>English: French</extracomment>
        <translation>Français</translation>
    </message>
    <message>
        <source>label.internet_killswitch</source>
        <extracomment>English: Network Killswitch</extracomment>
        <translation>Coupe-circuit réseau</translation>
    </message>
    <message>
        <source>label.internet_killswitch:</source>
        <extracomment>English: Internet Killswitch:</extracomment>
        <translation>Coupe-circuit Internet&#xa0;:</translation>
    </message>
    <message>
        <source>label.killswitch_is_unavailable_want_to_continue</source>
        <extracomment>English: Killswitch is unavalible now. Continue?</extracomment>
        <translation>Le coupe-circuit est actuellement indisponible. Continuer&#xa0;?</translation>
    </message>
    <message>
        <source>label.main</source>
        <extracomment>English: Main</extracomment>
        <translation>Principal</translation>
    </message>
    <message>
        <source>label.ok</source>
        <extracomment>English: OK</extracomment>
        <translation>OK</translation>
    </message>
    <message>
        <source>label.ru.language</source>
        <extracomment>English: Russian</extracomment>
        <translation>Russe</translation>
    </message>
    <message>
        <source>label.run_at_login</source>
        <extracomment>English: Run at login</extracomment>
        <translation>Lancer à l&apos;ouverture de session</translation>
    </message>
    <message>
        <source>label.run_on_windows_startup</source>
        <extracomment>English: Run with Windows</extracomment>
        <translation>Lancer avec Windows</translation>
    </message>
    <message>
        <source>label.selectLanguage</source>
        <extracomment>English: Language</extracomment>
        <translation>Langue</translation>
    </message>
    <message>
        <source>label.select_protocol</source>
        <extracomment>English: Protocol</extracomment>
        <translation>Protocole</translation>
    </message>
    <message>
        <source>label.start_with_computer</source>
        <extracomment>English: Run at windows startup</extracomment>
        <translation>Lancer au démarrage de Windows</translation>
    </message>
    <message>
        <source>label.value_mail</source>
        <extracomment>English: email</extracomment>
        <translation>e-mail</translation>
    </message>
    <message>
        <source>label.version</source>
        <extracomment>English: Version %1</extracomment>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>title.settings:</source>
        <extracomment>English: Settings:</extracomment>
        <translation>Paramètres&#xa0;:</translation>
    </message>
</context>
<context>
    <name>SplashScreen</name>
    <message>
        <source>label.loading</source>
        <extracomment>English: Loading...</extracomment>
        <translation>Chargement...</translation>
    </message>
</context>
<context>
    <name>StatusWidget</name>
    <message>
        <source>Form</source>
        <translation>Formulaire</translation>
    </message>
    <message>
        <source>action.connect</source>
        <extracomment>English: Connect</extracomment>
        <translation>Connecter</translation>
    </message>
    <message>
        <source>action.disconnect</source>
        <extracomment>English: Disconnect</extracomment>
        <translation>Déconnecter</translation>
    </message>
    <message>
        <source>label.country_name</source>
        <extracomment>English: Country name</extracomment>
        <translation>Nom du pays</translation>
    </message>
    <message>
        <source>label.disconnected</source>
        <extracomment>English: Disconnected</extracomment>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>label.ipaddress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>label.no_available_servers</source>
        <extracomment>English: No available servers</extracomment>
        <translation>Aucun serveur disponible</translation>
    </message>
    <message>
        <source>label.not_secure</source>
        <extracomment>English: Unprotected</extracomment>
        <translation>Non protégé</translation>
    </message>
    <message>
        <source>label.select_the_desired_server:</source>
        <extracomment>English: Choose server:</extracomment>
        <translation>Choisissez un serveur&#xa0;:</translation>
    </message>
    <message>
        <source>label.status:</source>
        <extracomment>English: Status:</extracomment>
        <translation>Statut&#xa0;:</translation>
    </message>
    <message>
        <source>label.your_ip:</source>
        <extracomment>English: Your IP:</extracomment>
        <translation>Votre IP&#xa0;:</translation>
    </message>
</context>
<context>
    <name>VpnPointItemDelegate</name>
    <message>
        <source>label.server</source>
        <extracomment>English: servers</extracomment>
        <translation>serveurs</translation>
    </message>
</context>
<context>
    <name>tavero::ConnectionChain</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check internet connection.</extracomment>
        <translation>Échec de la connexion. Vérifiez votre connexion Internet.</translation>
    </message>
</context>
<context>
    <name>tavero::VpnManager</name>
    <message>
        <source>label.not_determined</source>
        <extracomment>English: Is not defined</extracomment>
        <translation>Non déterminée</translation>
    </message>
    <message>
        <source>warning.can_not_authorize_try_again</source>
        <extracomment>English: Authorization failed. Try again later.</extracomment>
        <translation>Échec de l&apos;authentification. Réessayez plus tard.</translation>
    </message>
    <message>
        <source>warning.can_not_get_connection_info</source>
        <extracomment>English: Unable to get information of connection.</extracomment>
        <translation>Impossible d&apos;obtenir les informations de connexion.</translation>
    </message>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Échec de la connexion. Vérifiez la connexion réseau.</translation>
    </message>
    <message>
        <source>warning.failed_to_get_account_information</source>
        <extracomment>English: Failed to get information about account.</extracomment>
        <translation>Impossible d&apos;obtenir les informations du compte.</translation>
    </message>
    <message>
        <source>warning.login_or_pass_are_incorrect</source>
        <extracomment>English: Wrong login or password.</extracomment>
        <translation>Identifiant ou mot de passe incorrect.</translation>
    </message>
    <message>
        <source>warning.response_does_not_match_requested_protocol_update_the_program</source>
        <extracomment>English: Version headers error. Update this programm</extracomment>
        <translation>Erreur dans les en-têtes de version. Mettez à jour le programme</translation>
    </message>
</context>
<context>
    <name>tavero::VpnServerSelector</name>
    <message>
        <source>warning.connection_problems_check_internet_connection</source>
        <extracomment>English: Connection failed. Check network connection.</extracomment>
        <translation>Échec de la connexion. Vérifiez la connexion réseau.</translation>
    </message>
    <message>
        <source>warning.failed_get_information_about_vpn_servers</source>
        <extracomment>English: Unable to get information about VPN servers.</extracomment>
        <translation>Impossible d&apos;obtenir les informations sur les serveurs VPN.</translation>
    </message>
</context>
</TS>
