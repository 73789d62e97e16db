#include "gui/shell/fontsizetable.h"

QMap<int, double> FontSizeTable::sizes()
{
    // Odd design sizes above 24 (25, 27, 28, ...) were never used by a layout and are absent.
    return {
        {8, 6},   {9, 7},   {10, 7.5}, {11, 8},    {12, 9},  {13, 10},   {14, 10.5},
        {15, 11}, {16, 12}, {17, 13},  {18, 13.5}, {19, 14}, {20, 14.5}, {21, 15},
        {22, 16}, {23, 17}, {24, 18},  {26, 20},   {29, 22}, {32, 24},   {35, 26},
        {36, 27}, {37, 28}, {38, 29},  {40, 30},   {42, 32}, {45, 34},   {48, 36},
    };
}

double FontSizeTable::rescaleSize(const QMap<int, double>& table, int size)
{
    const double shown = table.value(size, 0.0);
    return shown > 0 ? shown : 1.0;
}
