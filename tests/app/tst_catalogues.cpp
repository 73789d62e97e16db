// The five compiled message catalogues against the documented key table: every key has a text in
// every language except the one entry kept without, the English differs by context where it is
// meant to, and the Linguist sources hold exactly the documented keys. Placeholders, duplicates and
// the sources' layout are checked against the table by the catalogue_table test.
#include "support/testmain.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>
#include <vector>

namespace {

// The three link texts of the settings dialog are keys and English texts at once.
const char* const kSiteLink = "<a href=\"https://tavero.example\"><span style=\" text-decoration: "
                              "underline;\">https://tavero.example</span></a>";
const char* const kFaqLink = "<a href=\"https://tavero.example/faq\"><span style=\" "
                             "text-decoration: underline;\">https://tavero.example/faq</span></a>";
const char* const kFeedbackLink =
    "<a href=\"https://tavero.example/feedback\"><span style=\" text-decoration: "
    "underline;\">https://tavero.example/feedback</span></a>";

struct ContextKeys {
    const char* context;
    std::vector<const char*> keys;
};

// Every key the client translates, by context, as documented for the catalogues.
const std::vector<ContextKeys>& documentedKeys()
{
    // clang-format off
    static const std::vector<ContextKeys> table = {
        {"AboutProgrammWindowsWidget",
         {"action.check_update", "label.copyright", "label.release_date", "label.version", "message.you_have_actual_version", "title.about_widget_title", "title.you_have_actual_version"}},
        {"Application",
         {"title.application_name", "warning.running_without_admin_permissions"}},
        {"Gui::ServerSelectionWidget",
         {"label.all_servers", "label.recommended_servers"}},
        {"Gui::StatusWidget",
         {"action.change_server", "warning.change_protocol_due_the_quality_of_the_server", "warning.connection_problems_check_internet_connection", "warning.killswitch_triggered", "warning.no_network", "warning.problems_with_vpn_server_connect_to_another_server", "warning.protocol_was_changed_due_the_quality_of_the_server", "warning.vpn_connection_was_reestablished"}},
        {"LoginController",
         {"label.authorization"}},
        {"LoginWidget",
         {"Form", "label.authorization", "label.login", "label.your_email", "label.your_password"}},
        {"MainWindow",
         {"TAVERO", "action.connect", "action.disconnect", "action.exit", "action.settings", "action.show_attachment"}},
        {"NewVersionDialog",
         {"TAVERO", "action.cancel", "action.install", "action.install_later", "label.new_version_detected_want_to_install", "label.warning_about_necesry_update", "label.whats_new"}},
        {"QObject",
         {"%1", "TAVERO", "action.cancel", "action.continue", "action.no", "action.yes", "body.do_we_need_enable_internet_interfaces", "body.kill_switch_triggered", "body.kill_switch_triggered_second_time", "label.auto_protocol", "label.can_not_create_config_for_open_vpn", "label.connected", "label.connection_opens", "label.disconnected", "label.no_config_for_open_vpn", "label.not_secure", "label.program_is_already_running", "label.protected", "label.server_selection", "title.connected", "title.connecting", "title.disconnected", "title.exit_confirmation", "title.kill_switch_triggered", "title.settings_confirmation", "warning.authorization_failure_try_again", "warning.can_not_connect", "warning.can_not_connect_by_protocol", "warning.can_not_open_vpn_check_is_admin_granted", "warning.cannot_open_ikev2_connection", "warning.cannot_open_l2tp_connection", "warning.cannot_open_pptp_connection", "warning.confirm_exit", "warning.connection_problems_check_internet_connection", "warning.could_not_break_vpn_connection", "warning.could_not_connect_to_the_connection_manager_library", "warning.could_not_connect_to_vpn", "warning.could_not_connect_using_pptp", "warning.failed_to_disable_vpn_connection", "warning.failed_to_turn_off_the_internet", "warning.failed_to_turn_on_the_internet", "warning.found_rdp_ikev_can_disconnect_it_continue?", "warning.internet_connection_failed", "warning.internet_shutdown_failed", "warning.l2tp_connection_fail", "warning.network_unavailable", "warning.no_server_available_in_country_select_another", "warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.", "warning.open_vpn_connection_time_out", "warning.open_vpn_does_not_exists_try_another_protocol", "warning.open_vpn_running_fails_check_apps", "warning.open_vpn_server_data_rejected", "warning.open_vpn_server_does_not_respond", "warning.program_is_already_running_want_to_continue", "warning.selected_protocol_not_allowed_save_anyway?", "warning.server_is_unavailable_select_an_available_server", "warning.unable_to_connect_using_IKEv2_protocol", "warning.unable_to_connect_using_L2TP_protocol", "warning.vpn_connection_is_connected", "warning.vpn_connection_is_disabled", "warning.vpn_is_connected_confirm_exit", "warning.want_reconnect_with_new_protocol_settings?", "warning.you_should_to_change_server"}},
        {"ServerSelectionWidget",
         {"Form", "label.server_selection"}},
        {"SettingsDialog",
         {"FAQ:", "TAVERO", "TAVERO:", "Support/Contact:", "action.exit", "label.about_the_program", "label.account", "label.account:", "label.auto_terminates_connection_when_vpn_is_unavailable", "label.autoload", "label.automatic_connection", "label.basic_settings", "label.cancel", "label.common", "label.connect_to_the_last_selected_location", "label.connect_to_the_recommended_location", "label.connection_settings", "label.de.language", "label.email:", "label.en.language", "label.enable_killswitch", "label.fr.language", "label.internet_killswitch", "label.internet_killswitch:", "label.killswitch_is_unavailable_want_to_continue", "label.main", "label.ok", "label.ru.language", "label.run_at_login", "label.run_on_windows_startup", "label.selectLanguage", "label.select_protocol", "label.start_with_computer", "label.value_mail", "label.version", "title.settings:", kSiteLink, kFaqLink, kFeedbackLink}},
        {"SplashScreen",
         {"label.loading"}},
        {"StatusWidget",
         {"Form", "action.connect", "action.disconnect", "label.country_name", "label.disconnected", "label.ipaddress", "label.no_available_servers", "label.not_secure", "label.select_the_desired_server:", "label.status:", "label.your_ip:"}},
        {"VpnPointItemDelegate",
         {"label.server"}},
        {"tavero::ConnectionChain",
         {"warning.connection_problems_check_internet_connection"}},
        {"tavero::VpnManager",
         {"label.not_determined", "warning.can_not_authorize_try_again", "warning.can_not_get_connection_info", "warning.connection_problems_check_internet_connection", "warning.failed_to_get_account_information", "warning.login_or_pass_are_incorrect", "warning.response_does_not_match_requested_protocol_update_the_program"}},
        {"tavero::VpnServerSelector",
         {"warning.connection_problems_check_internet_connection", "warning.failed_get_information_about_vpn_servers"}},
    };
    // clang-format on
    return table;
}

const char* const kUntranslatedContext = "StatusWidget";
const char* const kUntranslatedKey = "label.ipaddress";

struct Entry {
    QString context;
    QString key;
};

QVector<Entry> documentedEntries()
{
    QVector<Entry> entries;
    for (const ContextKeys& group : documentedKeys()) {
        for (const char* key : group.keys) {
            entries.push_back({QString::fromUtf8(group.context), QString::fromUtf8(key)});
        }
    }
    return entries;
}

bool isUntranslated(const Entry& entry)
{
    return entry.context == QLatin1String(kUntranslatedContext) &&
           entry.key == QLatin1String(kUntranslatedKey);
}

QString describe(const Entry& entry)
{
    return entry.context + QLatin1String(" / ") + entry.key;
}

QString translate(const QTranslator& translator, const Entry& entry)
{
    return translator.translate(entry.context.toUtf8().constData(), entry.key.toUtf8().constData());
}

bool loadCatalogue(QTranslator& translator, const QString& name)
{
    return translator.load(QStringLiteral(":/translations/") + name);
}

QString sourceCataloguePath(const QString& name)
{
    return qEnvironmentVariable("TAVERO_SOURCE_DIR") + QStringLiteral("/resources/translations/") +
           name + QStringLiteral(".ts");
}

const QStringList kCatalogues = {QStringLiteral("eng"), QStringLiteral("fra"),
                                 QStringLiteral("ger"), QStringLiteral("rus"),
                                 QStringLiteral("spa")};

void addCatalogueRows()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : kCatalogues) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

} // namespace

class TestCatalogues : public QObject {
    Q_OBJECT

private slots:
    void everyDocumentedKeyIsTranslated_data() { addCatalogueRows(); }
    void everyDocumentedKeyIsTranslated();
    void englishTextsAsDocumented_data();
    void englishTextsAsDocumented();
    void administratorWarningKeepsItsThreeParagraphs();
    void serverWordMarksTheAllServersHeader_data() { addCatalogueRows(); }
    void serverWordMarksTheAllServersHeader();
    void translationsDifferFromEnglishUnlessReviewed_data();
    void translationsDifferFromEnglishUnlessReviewed();
    void sourceCatalogueHoldsExactlyTheDocumentedKeys_data() { addCatalogueRows(); }
    void sourceCatalogueHoldsExactlyTheDocumentedKeys();
};

void TestCatalogues::everyDocumentedKeyIsTranslated()
{
    QFETCH(QString, name);
    QTranslator translator;
    QVERIFY2(loadCatalogue(translator, name), qPrintable(name));

    QStringList missing;
    for (const Entry& entry : documentedEntries()) {
        if (isUntranslated(entry)) {
            continue;
        }
        const QString text = translate(translator, entry);
        if (text.trimmed().isEmpty()) {
            missing << describe(entry);
        }
    }
    QVERIFY2(missing.isEmpty(), qPrintable(QStringLiteral("no text: ") + missing.join(", ")));

    // The IP caption is the one entry that must reach the screen as its key.
    QCOMPARE(translator.translate(kUntranslatedContext, kUntranslatedKey), QString());
}

void TestCatalogues::englishTextsAsDocumented_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("english");

    const auto row = [](const char* context, const char* key, const QString& english) {
        QTest::addRow("%s %s", context, key)
            << QString::fromUtf8(context) << QString::fromUtf8(key) << english;
    };
    const char* const problems = "warning.connection_problems_check_internet_connection";
    // The same key reads differently depending on who raises it.
    row("QObject", problems, QStringLiteral("Connection failed. Check internet connection."));
    row("tavero::ConnectionChain", problems,
        QStringLiteral("Connection failed. Check internet connection."));
    row("tavero::VpnManager", problems,
        QStringLiteral("Connection failed. Check network connection."));
    row("tavero::VpnServerSelector", problems,
        QStringLiteral("Connection failed. Check network connection."));
    row("Gui::StatusWidget", problems,
        QStringLiteral("Connection failed. Check network connection"));
    row("SettingsDialog", "label.version", QStringLiteral("Version %1"));
    row("AboutProgrammWindowsWidget", "label.version", QStringLiteral("Version"));
    row("QObject", "label.server_selection", QStringLiteral("Choose server"));
    row("ServerSelectionWidget", "label.server_selection", QStringLiteral("Server selection"));
    row("QObject", "label.not_secure", QStringLiteral("Unprotected"));
    row("MainWindow", "action.exit", QStringLiteral("Exit"));

    // Texts kept exactly as written, odd spelling and spacing included.
    row("AboutProgrammWindowsWidget", "label.copyright", QStringLiteral("Copyright"));
    row("Gui::StatusWidget", "action.change_server", QStringLiteral("Change server"));
    row("Gui::StatusWidget", "warning.change_protocol_due_the_quality_of_the_server",
        QStringLiteral("Auto change protocol because of poor connection"));
    row("Gui::StatusWidget", "warning.no_network", QStringLiteral("Offline"));
    row("QObject", "label.no_config_for_open_vpn",
        QStringLiteral("Failed to get configuration for Open VPN"));
    row("QObject", "warning.could_not_break_vpn_connection",
        QStringLiteral("Disconnection of VPN failed"));
    row("QObject", "warning.could_not_connect_using_pptp",
        QStringLiteral("Unable to connect with PPTP protocol"));
    row("QObject", "warning.l2tp_connection_fail", QStringLiteral("L2TP Connection failed"));
    row("QObject", "warning.server_is_unavailable_select_an_available_server",
        QStringLiteral("Server \"%1\" is unavalible. Select another one."));
    row("QObject", "warning.unable_to_connect_using_L2TP_protocol",
        QStringLiteral("Unable to connect with L2TP protocol"));
    row("QObject",
        "warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_server.",
        QStringLiteral("No  specified protocols are supported by the selected server."));
    row("QObject", "warning.want_reconnect_with_new_protocol_settings?",
        QString::fromUtf8("Do you like to reconnect using new (\xd0\xb8\xd0\xbb\xd0\xb8 updated) "
                          "protocol settings?"));
    row("QObject", "action.yes", QStringLiteral("YES"));
    row("QObject", "title.connecting", QStringLiteral("Connecting..."));
    row("QObject", "warning.open_vpn_server_data_rejected",
        QStringLiteral(
            "The server's connection data were rejected as unsafe. Try another server or "
            "contact support"));
    row("SettingsDialog", "label.auto_terminates_connection_when_vpn_is_unavailable",
        QStringLiteral("Apllication will be acthomatically disconnected, when VPN is unavailable"));
    row("SettingsDialog", "FAQ:", QStringLiteral("FAQ:"));
    row("SettingsDialog", "TAVERO:", QStringLiteral("TAVERO:"));
    row("SettingsDialog", "Support/Contact:", QStringLiteral("Support/Contact:"));
    row("SettingsDialog", "label.de.language", QStringLiteral("German"));
    row("SettingsDialog", "label.en.language", QStringLiteral("English"));
    row("SettingsDialog", "label.fr.language", QStringLiteral("French"));
    row("SettingsDialog", "label.ru.language", QStringLiteral("Russian"));
    row("SettingsDialog", "label.value_mail", QStringLiteral("email"));
    row("SettingsDialog", kSiteLink, QString::fromUtf8(kSiteLink));
    row("SettingsDialog", kFaqLink, QString::fromUtf8(kFaqLink));
    row("SettingsDialog", kFeedbackLink, QString::fromUtf8(kFeedbackLink));
    row("StatusWidget", "label.select_the_desired_server:", QStringLiteral("Choose server:"));
}

void TestCatalogues::englishTextsAsDocumented()
{
    QFETCH(QString, context);
    QFETCH(QString, key);
    QFETCH(QString, english);
    QTranslator translator;
    QVERIFY(loadCatalogue(translator, QStringLiteral("eng")));
    QCOMPARE(translate(translator, {context, key}), english);
}

void TestCatalogues::administratorWarningKeepsItsThreeParagraphs()
{
    QTranslator translator;
    QVERIFY(loadCatalogue(translator, QStringLiteral("eng")));
    const QString text =
        translator.translate("Application", "warning.running_without_admin_permissions");
    const QStringList paragraphs = text.split(QStringLiteral("\n\n"));
    QCOMPARE(paragraphs.size(), 3);
    // The first word starts with a Cyrillic capital Es, exactly as the text was given.
    QCOMPARE(paragraphs[0],
             QString::fromUtf8(
                 "\xd0\xa1"
                 "ertain features may require you to run the application as administrator."));
    QVERIFY2(paragraphs[1].contains(QString::fromUtf8("\xe2\x80\x9cKillswitch\xe2\x80\x9d")),
             qPrintable(paragraphs[1]));
    QVERIFY2(paragraphs[1].startsWith(QStringLiteral("Open VPN connection")),
             qPrintable(paragraphs[1]));
    QVERIFY2(
        paragraphs[1].endsWith(QStringLiteral("are not allowed without administrator rights.")),
        qPrintable(paragraphs[1]));
    QCOMPARE(paragraphs[2],
             QStringLiteral("If the application is used on a remote computer, connecting via IKEv2 "
                            "without administrator rights will disable remote access."));

    // Every translation keeps the same three-paragraph shape.
    for (const QString& name : kCatalogues) {
        QTranslator other;
        QVERIFY(loadCatalogue(other, name));
        const QString translated =
            other.translate("Application", "warning.running_without_admin_permissions");
        QVERIFY2(translated.split(QStringLiteral("\n\n")).size() == 3, qPrintable(name));
    }
}

void TestCatalogues::serverWordMarksTheAllServersHeader()
{
    // The server list indents a cell that contains the word for "servers": in every language the
    // "All servers" header must contain that word, or the header jumps left.
    QFETCH(QString, name);
    QTranslator translator;
    QVERIFY(loadCatalogue(translator, name));
    const QString word = translator.translate("VpnPointItemDelegate", "label.server");
    const QString header = translator.translate("Gui::ServerSelectionWidget", "label.all_servers");
    QVERIFY(!word.isEmpty());
    QVERIFY2(header.contains(word), qPrintable(header + QLatin1String(" / ") + word));
}

void TestCatalogues::translationsDifferFromEnglishUnlessReviewed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("reviewed");
    // Entries whose translation rightly reads as the English does; a copied English text anywhere
    // else is a forgotten translation. Product words, "OK", "%1" and links need no entry here.
    QTest::newRow("fra") << QStringLiteral("fra")
                         << QStringList{"AboutProgrammWindowsWidget / label.copyright",
                                        "AboutProgrammWindowsWidget / label.version",
                                        "MainWindow / action.settings",
                                        "QObject / title.exit_confirmation",
                                        "QObject / title.kill_switch_triggered",
                                        "SettingsDialog / label.version"};
    QTest::newRow("ger") << QStringLiteral("ger")
                         << QStringList{"AboutProgrammWindowsWidget / label.copyright",
                                        "AboutProgrammWindowsWidget / label.version",
                                        "Gui::StatusWidget / warning.no_network",
                                        "SettingsDialog / label.version",
                                        "StatusWidget / label.status:"};
    QTest::newRow("rus") << QStringLiteral("rus") << QStringList{};
    QTest::newRow("spa") << QStringLiteral("spa")
                         << QStringList{"AboutProgrammWindowsWidget / label.copyright",
                                        "QObject / action.no"};
}

void TestCatalogues::translationsDifferFromEnglishUnlessReviewed()
{
    QFETCH(QString, name);
    QFETCH(QStringList, reviewed);
    QTranslator english;
    QTranslator translated;
    QVERIFY(loadCatalogue(english, QStringLiteral("eng")));
    QVERIFY(loadCatalogue(translated, name));

    static const QRegularExpression lowerCase(QStringLiteral("[a-z]"));
    QStringList copied;
    for (const Entry& entry : documentedEntries()) {
        const QString englishText = translate(english, entry);
        const bool productWord = !lowerCase.match(englishText).hasMatch(); // "TAVERO:", "OK", "%1"
        const bool link = englishText.startsWith(QLatin1String("<a "));
        if (englishText.isEmpty() || productWord || link || reviewed.contains(describe(entry))) {
            continue;
        }
        if (translate(translated, entry) == englishText) {
            copied << describe(entry);
        }
    }
    QVERIFY2(copied.isEmpty(),
             qPrintable(QStringLiteral("reads as the English: ") + copied.join(", ")));
}

void TestCatalogues::sourceCatalogueHoldsExactlyTheDocumentedKeys()
{
    QFETCH(QString, name);
    QFile file(sourceCataloguePath(name));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));

    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    QSet<QString> found;
    QStringList unfinished;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
            found.insert(context + QLatin1String(" / ") + source);
        } else if (xml.name() == QLatin1String("translation") && xml.readElementText().isEmpty()) {
            unfinished << context + QLatin1String(" / ") + source;
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));

    QSet<QString> documented;
    for (const Entry& entry : documentedEntries()) {
        documented.insert(describe(entry));
    }
    QStringList stale = (found - documented).values();
    QStringList absent = (documented - found).values();
    stale.sort();
    absent.sort();
    QVERIFY2(stale.isEmpty(), qPrintable(QStringLiteral("not documented: ") + stale.join(", ")));
    QVERIFY2(absent.isEmpty(), qPrintable(QStringLiteral("missing: ") + absent.join(", ")));
    QCOMPARE(unfinished, QStringList{QStringLiteral("StatusWidget / label.ipaddress")});
}

TAVERO_TEST_GUILESS_MAIN(TestCatalogues)

#include "tst_catalogues.moc"
