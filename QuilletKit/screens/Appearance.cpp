#include "screens/Appearance.hpp"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include <optional>

namespace quillet::Appearance {
namespace {

struct SystemLook {
    QString style;
    QPalette palette;
};

const SystemLook& systemLook() {
    static const SystemLook look{QApplication::style()->name(), QApplication::palette()};
    return look;
}

QPalette lightPalette() {
    QPalette p;
    p.setColor(QPalette::Window, QColor(0xf4, 0xf5, 0xf7));
    p.setColor(QPalette::WindowText, QColor(0x1d, 0x1f, 0x23));
    p.setColor(QPalette::Base, Qt::white);
    p.setColor(QPalette::AlternateBase, QColor(0xee, 0xf0, 0xf3));
    p.setColor(QPalette::ToolTipBase, Qt::white);
    p.setColor(QPalette::ToolTipText, QColor(0x1d, 0x1f, 0x23));
    p.setColor(QPalette::PlaceholderText, QColor(0x5f, 0x66, 0x70));
    p.setColor(QPalette::Text, QColor(0x1d, 0x1f, 0x23));
    p.setColor(QPalette::Button, QColor(0xfa, 0xfa, 0xfb));
    p.setColor(QPalette::ButtonText, QColor(0x1d, 0x1f, 0x23));
    p.setColor(QPalette::BrightText, Qt::red);
    p.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xc4));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x2f, 0x6f, 0xc4));
    p.setColor(QPalette::Light, Qt::white);
    p.setColor(QPalette::Midlight, QColor(0xe3, 0xe5, 0xe8));
    p.setColor(QPalette::Mid, QColor(0xb8, 0xbc, 0xc2));
    p.setColor(QPalette::Dark, QColor(0x8a, 0x8f, 0x96));
    p.setColor(QPalette::Shadow, QColor(0x50, 0x50, 0x50));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Disabled, role, QColor(0x9a, 0x9f, 0xa6));
    }
    return p;
}

QPalette darkPalette() {
    QPalette p;
    p.setColor(QPalette::Window, QColor(0x23, 0x25, 0x29));
    p.setColor(QPalette::WindowText, QColor(0xe6, 0xe8, 0xeb));
    p.setColor(QPalette::Base, QColor(0x1a, 0x1c, 0x1f));
    p.setColor(QPalette::AlternateBase, QColor(0x2a, 0x2d, 0x32));
    p.setColor(QPalette::ToolTipBase, QColor(0x2a, 0x2d, 0x32));
    p.setColor(QPalette::ToolTipText, QColor(0xe6, 0xe8, 0xeb));
    p.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa6, 0xae));
    p.setColor(QPalette::Text, QColor(0xe6, 0xe8, 0xeb));
    p.setColor(QPalette::Button, QColor(0x32, 0x35, 0x3a));
    p.setColor(QPalette::ButtonText, QColor(0xe6, 0xe8, 0xeb));
    p.setColor(QPalette::BrightText, QColor(0xff, 0x7b, 0x72));
    p.setColor(QPalette::Highlight, QColor(0x3d, 0x7f, 0xd6));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x79, 0xb0, 0xf2));
    p.setColor(QPalette::Light, QColor(0x45, 0x49, 0x4f));
    p.setColor(QPalette::Midlight, QColor(0x3a, 0x3d, 0x43));
    p.setColor(QPalette::Mid, QColor(0x5a, 0x5f, 0x66));
    p.setColor(QPalette::Dark, QColor(0x15, 0x16, 0x18));
    p.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        p.setColor(QPalette::Disabled, role, QColor(0x6e, 0x73, 0x7a));
    }
    return p;
}

} // namespace

void apply(AppSettings::Appearance appearance) {
    const SystemLook& system = systemLook();
    switch (appearance) {
    case AppSettings::Appearance::system:
        QApplication::setStyle(QStyleFactory::create(system.style));
        QApplication::setPalette(system.palette);
        return;
    case AppSettings::Appearance::light:
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(lightPalette());
        return;
    case AppSettings::Appearance::dark:
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QApplication::setPalette(darkPalette());
        return;
    }
}

} // namespace quillet::Appearance
