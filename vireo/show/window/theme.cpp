#include "vireo/show/window/theme.h"

namespace tavo {

namespace {

QPalette makePalette(QColor window, QColor base, QColor text, QColor highlight)
{
    QPalette palette(window, window); // with shades made of it
    const QColor faint = QColor::fromRgbF(
        (text.redF() + window.redF()) / 2, (text.greenF() + window.greenF()) / 2, (text.blueF() + window.blueF()) / 2);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, highlight);
    for (const QPalette::ColorRole role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, faint);
    }
    palette.setColor(QPalette::PlaceholderText, faint);
    return palette;
}

} // namespace

QPalette paletteOf(Theme theme)
{
    switch (theme) {
    case Theme::Desktop: break;
    case Theme::Light: return makePalette(0xEFEFEF, 0xFFFFFF, 0x1A1A1A, 0x2A6FB5);
    case Theme::Dark: return makePalette(0x2D2D30, 0x1E1E20, 0xE4E4E4, 0x3A7FC5);
    }
    return {};
}

} // namespace tavo
