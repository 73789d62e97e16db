#pragma once

#include "support/fakeserverapi.h"

#include <QDir>

namespace tavero::screenshots {

// The scripted service of the page pictures, answering flag pictures from a folder laid out as
// the development service's ("60x45/<code>.png", "640x480/<code>.png"). Safe to ask for flags
// from several threads at once, as the server page's row builder does.
class FlagFileServerApi : public test::FakeServerApi {
public:
    explicit FlagFileServerApi(const QString& flagDirectory);

    QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size) override;

private:
    const QDir m_flagDirectory;
};

} // namespace tavero::screenshots
