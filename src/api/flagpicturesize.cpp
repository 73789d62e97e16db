#include "api/flagpicturesize.h"

QString flagPictureSizeText(FlagPictureSize size)
{
    return size == FlagPictureSize::Small ? QStringLiteral("60x45") : QStringLiteral("640x480");
}
