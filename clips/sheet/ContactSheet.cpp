#include "clips/sheet/ContactSheet.h"

#include <QFont>
#include <QFontDatabase>
#include <QPainter>
#include <QString>
#include <QStringList>

#include "clips/Mp3.h"
#include "clips/measure/Strength.h"
#include "clips/sheet/ClipPicture.h"

namespace quiverly::clips {

namespace {

// In pixels.
constexpr int sheetColumns = 3;
constexpr int cellWidth = 256; // holds the picture of a clip of 3.5 s
constexpr int cellHeight = 164;
constexpr int pictureTop = 20;
constexpr int margin = 14;
constexpr int titleSize = 13;
constexpr int figuresSize = 11;

constexpr QColor paper(28, 28, 30);
constexpr QColor bright(245, 245, 247);
constexpr QColor grey(160, 160, 165);
constexpr QColor pink(242, 71, 158);

// The colours of the pictures and those of the texts, with some steps between paper and text for smooth edges.
QList<QRgb> sheetColours() {
    constexpr int steps = 4;
    QList<QRgb> colours = clipPictureColours();
    for (const QColor& text : {bright, grey, pink}) {
        for (int step = 0; step <= steps; ++step) {
            const auto mixed = [step](int from, int to) { return from + (to - from) * step / steps; };
            colours << qRgb(mixed(paper.red(), text.red()), mixed(paper.green(), text.green()),
                            mixed(paper.blue(), text.blue()));
        }
    }
    return colours;
}

// The same on every machine.
QFont sheetFont(int pixels) {
    static const QStringList families =
        QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(":/fonts/Text-Regular.otf"));
    QFont font(families);
    font.setPixelSize(pixels);
    font.setHintingPreference(QFont::PreferFullHinting);
    return font;
}

QString figuresOf(const Strength& strength) {
    return QString("%1 s    %2 LUFS    %3 Hz\n%4 bands    %5 octaves    rough %6")
        .arg(strength.seconds, 0, 'f', 2)
        .arg(strength.loudness, 0, 'f', 1)
        .arg(strength.brightness, 0, 'f', 0)
        .arg(strength.density, 0, 'f', 0)
        .arg(strength.range, 0, 'f', 1)
        .arg(strength.roughness, 0, 'f', 2);
}

// Draws a clip into the cell whose upper left corner is the painter's origin.
void drawCell(QPainter& painter, int number, const QString& title, const Stereo& sound) {
    const Strength strength = strengthOf(sound);
    const QImage picture = clipPicture(sound);
    painter.setFont(sheetFont(titleSize));
    const QRect heading(0, 0, cellWidth, pictureTop);
    painter.setPen(pink);
    painter.drawText(heading, Qt::AlignLeft, QString::number(number));
    painter.setPen(bright);
    painter.drawText(heading.adjusted(22, 0, 0, 0), Qt::AlignLeft, title);
    painter.drawImage(0, pictureTop, picture);
    painter.setFont(sheetFont(figuresSize));
    painter.setPen(grey);
    painter.drawText(QRect(0, pictureTop + picture.height() + 4, cellWidth, 30), Qt::AlignLeft, figuresOf(strength));
}

} // namespace

tl::expected<QImage, std::string> contactSheet(const PackRecipe& recipe, const std::filesystem::path& audio) {
    const int count = static_cast<int>(recipe.clips.size());
    const int rows = (count + sheetColumns - 1) / sheetColumns;
    QImage sheet(sheetColumns * (cellWidth + margin) + margin, rows * (cellHeight + margin) + margin,
                 QImage::Format_RGB32);
    sheet.fill(paper);
    QPainter painter(&sheet);
    for (int index = 0; index < count; ++index) {
        const auto clip = static_cast<std::size_t>(index);
        const auto sound = readMp3(audio / recipe.fileOf(clip));
        if (!sound) return tl::unexpected(sound.error());
        painter.resetTransform();
        const int row = index / sheetColumns;
        const int column = index % sheetColumns;
        painter.translate(margin + column * (cellWidth + margin), margin + row * (cellHeight + margin));
        drawCell(painter, index + 1, QString::fromStdString(recipe.clips[clip].title), *sound);
    }
    painter.end();
    return sheet.convertToFormat(QImage::Format_Indexed8, sheetColours(), Qt::ThresholdDither); // a third of the size
}

tl::expected<std::string, std::string> writeContactSheets(const std::filesystem::path& audio,
                                                          const std::filesystem::path& folder) {
    std::string markdown;
    for (const PackRecipe& recipe : allPackRecipes()) {
        const std::string name = std::string(recipe.pack.folder()) + ".png";
        const auto sheet = contactSheet(recipe, audio);
        if (!sheet) return tl::unexpected(sheet.error());
        if (!sheet->save(QString::fromStdString((folder / name).string()), "PNG", 0)) {
            return tl::unexpected((folder / name).string() + ": The picture cannot be written.");
        }
        const auto picture = QString::fromStdString((folder.filename() / name).string());
        markdown += QString("\n### %1\n\n![The clips of %1](%2)\n").arg(recipe.pack.title(), picture).toStdString();
    }
    return markdown;
}

} // namespace quiverly::clips
