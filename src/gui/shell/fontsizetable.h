#pragma once

#include <QMap>

// The point sizes the page layouts were designed with, mapped to the point sizes shown on screen.
// The view manager keeps a copy and applies it once, in its font pass, to every page.
class FontSizeTable {
public:
    // Design size → shown point size; 28 rows, from 8 to 48.
    static QMap<int, double> sizes();

    // The shown point size for a design size: the table's value, or 1.0 when the table holds no
    // positive value for it (sizes the layouts never use, zero, negatives).
    static double rescaleSize(const QMap<int, double>& table, int size);
};
