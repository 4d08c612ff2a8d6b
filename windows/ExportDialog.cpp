// The export dialog.
#include "windows/ExportDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <algorithm>

#include "controls/ElidedLabel.h"
#include "controls/WindowPlacement.h"
#include "files/DiskFile.h"
#include "numbers/Formatfunctions.h"
#include "windows/ExportPages.h"

namespace ladderwise {

namespace {

constexpr int RefreshDelay = 150;     ///< ms after the last change
constexpr int PreviewBytes = 20'000;  ///< of a text
constexpr QSize ExportDialogSize(940, 660);
constexpr int FrequencyDigits = 3;  ///< after the first
constexpr double BytesOfKilobyte = 1000.0;

struct KindRow {
    const char* Caption;
    const char* Filter;
};

// In the order of ExportPage.
constexpr KindRow kindRows[NumExportPages] = {
    {"Touchstone", "Touchstone files (*.s2p)"}, {"Netlist", "Netlists (*.cir)"},
    {"Schematic", "Schematics (*.asc)"},        {"Sweep", "Tables (*.csv)"},
    {"Parts list", "Tables (*.csv)"},           {"Picture", "Pictures (*.png *.svg *.pdf)"}};

/// "98 kB".
QString SizeText(std::size_t count) {
    const double size = static_cast<double>(count);
    if (size < BytesOfKilobyte) return QString("%1 bytes").arg(count);
    const bool large = size >= BytesOfKilobyte * BytesOfKilobyte;
    const double shown = size / (large ? BytesOfKilobyte * BytesOfKilobyte : BytesOfKilobyte);
    return QString::fromStdString(FormatFixed(shown, shown < 10.0 ? 1 : 0)) +
           (large ? " MB" : " kB");
}

QString FrequencyText(double f) {
    return QString::fromStdString(FormatWithPrefix(f, FrequencyDigits, "Hz"));
}

/// A sentence of a fault: "there is no ladder" begins with a capital and ends with a point.
QString Sentence(const std::string& fault) {
    QString text = QString::fromStdString(fault);
    if (text.isEmpty()) return text;
    text[0] = text[0].toUpper();
    return text.endsWith('.') ? text : text + '.';
}

}  // namespace

/// Shows a picture as large as there is room.
class PicturePreview : public QWidget {
public:
    using QWidget::QWidget;

    void Show(const QImage& shown) {
        image = shown;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        if (image.isNull()) return;
        QPainter painter(this);
        const double ratio = devicePixelRatioF();
        const QSize room = (QSizeF(size()) * ratio).toSize();
        QImage scaled = image.scaled(image.size().scaled(room, Qt::KeepAspectRatio),
                                     Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
        const QSizeF drawn = QSizeF(scaled.size()) / ratio;
        const QRectF place(QPointF((width() - drawn.width()) / 2.0, 0.0), drawn);
        painter.drawImage(place.topLeft(), scaled);
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(place.adjusted(0.0, 0.0, -1.0, -1.0));
    }

private:
    QImage image;
};

void CopyPicture(const PictureContent& content, const ExportChoice& choice) {
    auto* const data = new QMimeData;
    const QFont font = QApplication::font();
    data->setImageData(
        PictureImage(ExtentOf(choice.Size), PixelsOf(choice.Size), content, choice.Look, font));
    const PlotFile svg = PaintPictureFile("picture.svg", choice.Size, content, choice.Look, font);
    if (svg.Error.empty()) data->setData("image/svg+xml", QByteArray::fromStdString(svg.Bytes));
    QApplication::clipboard()->setMimeData(data);
}

ExportDialog::ExportDialog(const ExportSubject& ofSubject, const ExportHost& byHost,
                           const ExportChoice& last, const QString& lastFolder, QWidget* parent)
    : QDialog(parent), subject(ofSubject), host(byHost), choice(last), folder(lastFolder) {
    setObjectName("ExportForm");
    setWindowTitle("Export");
    refresh = new QTimer(this);
    refresh->setSingleShot(true);
    refresh->setInterval(RefreshDelay);
    connect(refresh, &QTimer::timeout, this, &ExportDialog::Refresh);
    Build();
    kinds->setCurrentRow(static_cast<int>(choice.Page));
    resize(ExportDialogSize.boundedTo(RoomOnScreen(this)));
}

void ExportDialog::Build() {
    kinds = new QListWidget(this);
    kinds->setObjectName("ExportKindList");
    kinds->setAccessibleName("Kind of file");
    for (const KindRow& row : kindRows)
        kinds->addItem(QString::fromLatin1(row.Caption));
    kinds->setSpacing(2);
    kinds->setFixedWidth(kinds->sizeHintForColumn(0) + 40);
    pages = new ExportPages(this);
    pages->setObjectName("ExportPages");
    extent = new QLabel(this);
    extent->setObjectName("ExportExtent");
    reason = new ElidedLabel(this);
    reason->setObjectName("ExportReason");
    auto* const buttons = new QDialogButtonBox(this);
    save = buttons->addButton("&Save...", QDialogButtonBox::ActionRole);
    copy = buttons->addButton("&Copy", QDialogButtonBox::ActionRole);
    QPushButton* const close = buttons->addButton(QDialogButtonBox::Close);
    save->setObjectName("ExportSaveButton");
    copy->setObjectName("ExportCopyButton");
    close->setObjectName("ExportCloseButton");
    save->setDefault(true);
    for (QPushButton* const other : {copy, close})
        other->setAutoDefault(false);
    auto* const grid = new QGridLayout(this);
    grid->addWidget(kinds, 0, 0);
    grid->addWidget(pages, 0, 1);
    grid->addWidget(BuildPreview(), 1, 0, 1, 2);
    grid->addWidget(extent, 2, 0, 1, 2);
    grid->addWidget(reason, 3, 0, 1, 2);
    grid->addWidget(buttons, 4, 0, 1, 2);
    grid->setRowStretch(1, 1);
    grid->setColumnStretch(1, 1);
    connect(kinds, &QListWidget::currentRowChanged, this, &ExportDialog::ChoosePage);
    connect(pages, &ExportPages::Changed, refresh, qOverload<>(&QTimer::start));
    connect(save, &QPushButton::clicked, this, &ExportDialog::Save);
    connect(copy, &QPushButton::clicked, this, &ExportDialog::Copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QWidget* ExportDialog::BuildPreview() {
    preview = new QStackedWidget(this);
    text = new QPlainTextEdit(preview);
    text->setObjectName("ExportText");
    text->setAccessibleName("Preview");
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    picture = new PicturePreview(preview);
    picture->setObjectName("ExportPicture");
    preview->addWidget(text);
    preview->addWidget(picture);
    return preview;
}

void ExportDialog::ChoosePage(int row) {
    if (row < 0) return;
    choice.Page = static_cast<ExportPage>(row);
    pages->Show(choice, subject.Work.Design, subject.Work.WorstCase.Runs);
    Refresh();
}

ExportOptions ExportDialog::OptionsInForce() const {
    ExportOptions options = choice.Options;
    if (!choice.OwnPoints) options.Points = {};
    if (!choice.WithRuns || subject.Work.WorstCase.Runs == 0) options.Runs = 0;
    return options;
}

ExportSource ExportDialog::Source() const {
    const WorstCaseResult& worst = subject.Work.WorstCase;
    return {subject.Work.Design, subject.Work.Quantities, {worst.LowDb, worst.HighDb}, worst.Runs};
}

PlotFile ExportDialog::PictureBytes(const std::string& path) const {
    return PaintPictureFile(path, choice.Size, subject.Picture(), choice.Look,
                            QApplication::font());
}

/// What is to be written, its preview and its extent; or why nothing can be.
void ExportDialog::Refresh() {
    refresh->stop();
    bytes.clear();
    const bool isPicture = choice.Page == ExportPage::Picture;
    preview->setCurrentIndex(isPicture ? 1 : 0);
    std::string fault = pages->Read(choice);
    if (fault.empty())
        fault = isPicture ? ExportFault(subject.Work.Design)
                          : ExportFaultOf(KindOf(choice.Page), OptionsInForce(), Source());
    if (fault.empty()) fault = isPicture ? ShowPicture() : ShowText();
    const QString sentence = Sentence(fault);
    reason->SetText(sentence, {});
    for (QPushButton* const button : {save, copy}) {
        button->setEnabled(fault.empty());
        button->setToolTip(sentence);
    }
    if (fault.empty()) return;
    extent->clear();
    text->clear();
    picture->Show({});
}

std::string ExportDialog::ShowText() {
    bytes = ExportText(KindOf(choice.Page), OptionsInForce(), Source());
    QString shown = QString::fromStdString(bytes.substr(0, PreviewBytes));
    if (bytes.size() > PreviewBytes) shown = shown.left(shown.lastIndexOf('\n') + 1) + "...";
    text->setPlainText(shown);
    extent->setText(ContentText() + SizeText(bytes.size()));
    return {};
}

std::string ExportDialog::ShowPicture() {
    const PlotFile file = PictureBytes("picture." + EndingOf(choice));
    if (!file.Error.empty()) return file.Error;
    bytes = file.Bytes;
    const QSizeF size = ExtentOf(choice.Size);
    picture->Show(
        PictureImage(size, size.toSize(), subject.Picture(), choice.Look, QApplication::font()));
    const QSize pixels = PixelsOf(choice.Size);
    QString content;
    if (choice.Size.Millimetres)
        content = QString("%1 x %2 mm, ").arg(choice.Size.Width).arg(choice.Size.Height);
    if (!choice.Size.Millimetres || choice.Format == PictureFormat::Png)
        content += QString("%1 x %2 pixels, ").arg(pixels.width()).arg(pixels.height());
    extent->setText(content + SizeText(bytes.size()));
    return {};
}

/// "1001 points, 10.0 MHz to 1.00 GHz, ".
QString ExportDialog::ContentText() const {
    const ExportOptions options = OptionsInForce();
    if (choice.Page == ExportPage::PartsList)
        return QString("%1 parts, ").arg(std::count(bytes.begin(), bytes.end(), '\n') - 1);
    if (choice.Page == ExportPage::Netlist && options.Subcircuit) return {};
    const FrequencyRange range = RangeOf(KindOf(choice.Page), options.Points, subject.Work.Design);
    const QString points =
        QString(range.Points == 1 ? "%1 point, " : "%1 points, ").arg(range.Points) +
        FrequencyText(range.From) +
        (range.Points == 1 ? QString() : " to " + FrequencyText(range.To));
    const int runs = choice.Page == ExportPage::Touchstone ? options.Runs : 0;
    return runs > 0 ? QString("%1 files of ").arg(runs + 1) + points + ", each " : points + ", ";
}

QStringList ExportDialog::FilesFor(const QString& path) const {
    QStringList files{path};
    const int runs = choice.Page == ExportPage::Touchstone ? OptionsInForce().Runs : 0;
    for (int run = 1; run <= runs; ++run)
        files << QString::fromStdString(RunFile(path.toStdString(), run));
    return files;
}

bool ExportDialog::Write(const QStringList& files) {
    std::string content = bytes;
    if (choice.Page == ExportPage::Picture) {
        const PlotFile file = PictureBytes(files[0].toStdString());
        if (!file.Error.empty()) return host.Report("Error", file.Error), false;
        content = file.Bytes;
    }
    const std::vector<ElementList> ladders =
        files.size() > 1 ? subject.Ladders(static_cast<int>(files.size()) - 1)
                         : std::vector<ElementList>();
    for (qsizetype run = 0; run < files.size(); ++run) {
        if (run > 0)
            content = RunText(OptionsInForce(), subject.Work.Design,
                              ladders.at(static_cast<std::size_t>(run) - 1), static_cast<int>(run));
        const std::string error = WriteWholeFile(files[run].toStdString(), content);
        if (!error.empty()) return host.Report("Error", error), false;
    }
    return true;
}

void ExportDialog::Save() {
    Refresh();
    if (bytes.empty()) return;
    const QString ending = QString::fromStdString(EndingOf(choice));
    const auto row = static_cast<std::size_t>(choice.Page);
    QString path = host.NameToSave(QString::fromLatin1(kindRows[row].Filter), ending,
                                   folder + '/' + subject.Name + '.' + ending);
    if (path.isEmpty()) return;
    path = QFileInfo(path).absoluteFilePath();
    // What a picture is depends on its name, so that has to say it.
    const bool known = std::find(PictureEndings.begin(), PictureEndings.end(),
                                 QFileInfo(path).suffix().toLower()) != PictureEndings.end();
    if (choice.Page == ExportPage::Picture && !known) path += '.' + ending;
    const QStringList files = FilesFor(path);
    QStringList there;
    for (const QString& file : files)
        if (QFileInfo::exists(file)) there << file;
    if ((!there.isEmpty() && !host.MayReplace(there)) || !Write(files)) return;
    folder = QFileInfo(path).absolutePath();
    const QString saved = "Saved to " + QDir::toNativeSeparators(path) + '.';
    reason->SetText({}, saved);
}

void ExportDialog::Copy() {
    Refresh();
    if (bytes.empty()) return;
    if (choice.Page == ExportPage::Picture)
        CopyPicture(subject.Picture(), choice);
    else
        QApplication::clipboard()->setText(QString::fromStdString(bytes));
    reason->SetText({}, "Copied to the clipboard.");
}

}  // namespace ladderwise
