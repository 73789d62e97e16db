#pragma once

#include "api/countrypresentationdata.h"

#include <QVector>

// The whole content of the server selection page.
struct ServersPresentationData {
    QVector<CountryPresentationData> recommended;
    QVector<CountryPresentationData> all;
};
