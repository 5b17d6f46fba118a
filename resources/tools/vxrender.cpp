// vxrender: turns the vector sources of the program's images into the files
// packed into the resource packages. Run at build time:
//   vxrender OUTDIR png ALIAS SOURCE.svg W H [FILL] ...
//                   ico ALIAS SOURCE.svg ...
//                   gif ALIAS W H ...
// png writes ALIAS at W x H and its "@2x" twin at 2W x 2H; FILL replaces the
// "@FILL@" placeholder of the source (one drawing, several colours). ico
// writes a Windows icon with the sizes 16..256. gif draws the "detecting"
// animation (see detectinggif.cpp).
#include "detectinggif.h"
#include "icowriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

QImage renderSvg(const QByteArray &svg, const QSize &size)
{
    QSvgRenderer renderer(svg);
    if (!renderer.isValid())
        return QImage();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

bool readSvg(const QString &strPath, const QString &strFill, QByteArray &svg)
{
    QFile file(strPath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    svg = file.readAll();
    if (!strFill.isEmpty())
        svg.replace("@FILL@", strFill.toLatin1());
    return true;
}

bool ensureDir(const QString &strFile)
{
    return QDir().mkpath(QFileInfo(strFile).absolutePath());
}

QString twoX(const QString &strPath)
{
    const int nDot = strPath.lastIndexOf(QLatin1Char('.'));
    return strPath.left(nDot) + QStringLiteral("@2x") + strPath.mid(nDot);
}

bool fail(const QString &strWhat)
{
    std::fprintf(stderr, "vxrender: %s\n", qPrintable(strWhat));
    return false;
}

bool doPng(const QString &strOut, const QString &strSvg, int nWidth, int nHeight, const QString &strFill)
{
    QByteArray svg;
    if (!readSvg(strSvg, strFill, svg))
        return fail(QStringLiteral("cannot read ") + strSvg);
    for (int nScale = 1; nScale <= 2; ++nScale) {
        const QImage image = renderSvg(svg, QSize(nWidth, nHeight) * nScale);
        const QString strPath = nScale == 1 ? strOut : twoX(strOut);
        if (image.isNull() || !ensureDir(strPath) || !image.save(strPath, "PNG"))
            return fail(QStringLiteral("cannot render ") + strSvg + QStringLiteral(" to ") + strPath);
    }
    return true;
}

bool doIco(const QString &strOut, const QString &strSvg)
{
    QByteArray svg;
    if (!readSvg(strSvg, QString(), svg))
        return fail(QStringLiteral("cannot read ") + strSvg);
    QList<QImage> listImages;
    for (int nSize : {16, 24, 32, 48, 64, 128, 256})
        listImages.append(renderSvg(svg, QSize(nSize, nSize)));
    if (!ensureDir(strOut) || !IcoWriter::write(strOut, listImages))
        return fail(QStringLiteral("cannot write ") + strOut);
    return true;
}

bool doGif(const QString &strOut, int nWidth, int nHeight)
{
    if (!ensureDir(strOut) || !DetectingGif::write(strOut, QSize(nWidth, nHeight)))
        return fail(QStringLiteral("cannot write ") + strOut);
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    // Text in the sources needs a font database, which needs a GUI
    // application; the offscreen platform needs no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2)
    {
        fail(QStringLiteral("usage: vxrender OUTDIR (png|ico|gif) ..."));
        return 2;
    }
    const QString strOutDir = args.at(1);
    int i = 2;
    auto path = [&](const QString &strAlias) { return strOutDir + QLatin1Char('/') + strAlias; };
    while (i < args.size()) {
        const QString strKind = args.at(i);
        if (strKind == QLatin1String("png") && i + 4 < args.size()) {
            QString strFill;
            int nUsed = 5;
            if (i + 5 < args.size() && args.at(i + 5).startsWith(QLatin1Char('#'))) {
                strFill = args.at(i + 5);
                nUsed = 6;
            }
            if (!doPng(path(args.at(i + 1)), args.at(i + 2), args.at(i + 3).toInt(), args.at(i + 4).toInt(), strFill))
                return 1;
            i += nUsed;
        } else if (strKind == QLatin1String("ico") && i + 2 < args.size()) {
            if (!doIco(path(args.at(i + 1)), args.at(i + 2)))
                return 1;
            i += 3;
        } else if (strKind == QLatin1String("gif") && i + 3 < args.size()) {
            if (!doGif(path(args.at(i + 1)), args.at(i + 2).toInt(), args.at(i + 3).toInt()))
                return 1;
            i += 4;
        } else {
            fail(QStringLiteral("bad arguments at ") + strKind);
            return 2;
        }
    }
    return 0;
}
