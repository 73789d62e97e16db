#pragma once

#include <QString>

enum class FlagPictureSize : int {
    Large = 0, // "640x480"
    Small = 1, // "60x45"
};

// The size text used in flag picture addresses; any value but Small counts as Large.
QString flagPictureSizeText(FlagPictureSize size);
