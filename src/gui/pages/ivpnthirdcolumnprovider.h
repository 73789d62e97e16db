#pragma once

#include <QFont>

// What the server list's delegate needs to know about the load column from the page that owns
// the list: the column's width, the font of the load badges and the text's left margin.
class IVpnThirdColumnProvider {
public:
    virtual ~IVpnThirdColumnProvider() = default;

    virtual int thirdColumnWidth() const = 0;
    virtual QFont percentageFont() const = 0;
    virtual int percentageMargin() const = 0;
};
