#include "messageboxphoto.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>

namespace tavero::screenshots {

std::unique_ptr<QWidget> photographMessageBox(const std::function<void()>& trigger)
{
    QPixmap picture;
    QTimer poll;
    poll.setInterval(10);
    int attempts = 0;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) {
            if (++attempts > 300)
                poll.stop();
            return;
        }
        poll.stop();
        picture = box->grab();
        // Closing counts as the rejecting answer: the page does nothing further.
        box->reject();
    });
    poll.start();
    trigger();
    poll.stop();
    if (picture.isNull())
        return nullptr;

    auto label = std::make_unique<QLabel>();
    label->setPixmap(picture);
    label->setContentsMargins(0, 0, 0, 0);
    label->resize(picture.size());
    return label;
}

} // namespace tavero::screenshots
