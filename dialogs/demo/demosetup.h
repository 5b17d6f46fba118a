#pragma once

#include "custom.h"

#include <QCoreApplication>
#include <QResource>
#include <QTranslator>

// What the demos share with the program's start-up: the resource packages,
// the style-sheet description, the house font and, for Chinese, the
// program's and the kit's translations (the translators must outlive the
// demo's windows).
inline void setUpDemo(bool bChinese, QTranslator &program, QTranslator &kit)
{
    const QString strDir = QCoreApplication::applicationDirPath();
    QResource::registerResource(strDir + QStringLiteral("/rcc/Panekit_Default.rcc"));
    QResource::registerResource(strDir + QStringLiteral("/rcc/Orvex.rcc"));
    Custom::addXmlPath(QStringLiteral(":/Orvex/QSS/CustomStyleSheet_ox.xml"));
    Custom::setGlobalFontFamily(Custom::Chinese, QStringLiteral("Microsoft YaHei"));
    Custom::setGlobalFontFamily(Custom::English, QStringLiteral("Microsoft YaHei"));
    if (!bChinese) {
        Custom::setLanguage(Custom::English);
        return;
    }
    Custom::setLanguage(Custom::Chinese);
    if (program.load(strDir + QStringLiteral("/Translation/Vetrix_zh.qm")))
        QCoreApplication::installTranslator(&program);
    if (kit.load(strDir + QStringLiteral("/Translation/Panekit_zh_CN.qm")))
        QCoreApplication::installTranslator(&kit);
}
