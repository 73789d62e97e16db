#pragma once

#include <QString>

struct CountryInformation {
    int id = -1;
    QString code; // as sent; the key for flag pictures
    QString name;
    bool isAvailable = false;
};
