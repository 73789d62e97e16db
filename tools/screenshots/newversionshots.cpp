#include "clientstage.h"
#include "gui/pages/newversiondialog.h"
#include "shotregistry.h"

#include <QProgressBar>

namespace tavero::screenshots {
namespace {

// The dialog as the update check lays it out, with and without a change log, and downloading.
std::unique_ptr<QWidget> makeNewVersion(const QString& state)
{
    auto dialog = std::make_unique<NewVersionDialog>();
    ClientStage::applyFontPass(dialog.get());
    LastVersionGettingResult result;
    result.status = RequestResult::Ok;
    result.version = QStringLiteral("1.3.0.2");
    result.versionInt = 13002;
    if (state == QLatin1String("changelog"))
        result.changelog = QStringLiteral("- Faster server list\n- The kill switch now survives a "
                                          "suspend\n- Spanish and French texts corrected");
    dialog->setVersion(result);
    if (state == QLatin1String("downloading")) {
        dialog->setProgressIndicatorVisibility(true);
        dialog->findChild<QProgressBar*>(QStringLiteral("progressBar"))->setValue(42);
    }
    return dialog;
}

const ShotRegistration registration(QStringLiteral("newversion"),
                                    {QStringLiteral("changelog"), QStringLiteral("compact"),
                                     QStringLiteral("downloading")},
                                    &makeNewVersion);

} // namespace
} // namespace tavero::screenshots
