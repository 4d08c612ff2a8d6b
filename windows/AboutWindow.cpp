// The About window.
#include "windows/AboutWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFile>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSysInfo>

namespace ladderwise {

namespace {

constexpr int IconSize = 96;  ///< pixels
constexpr int TextColumns = 74;

QString Compiler() {
#if defined(__clang__)
    return QString("Clang %1.%2.%3")
        .arg(__clang_major__)
        .arg(__clang_minor__)
        .arg(__clang_patchlevel__);
#elif defined(__GNUC__)
    return QString("GCC %1.%2.%3").arg(__GNUC__).arg(__GNUC_MINOR__).arg(__GNUC_PATCHLEVEL__);
#elif defined(_MSC_VER)
    return QString("MSVC %1").arg(_MSC_VER);
#else
    return "another compiler";
#endif
}

QString LicenceText() {
    QFile file(":/texts/LICENSE");
    if (!file.open(QIODevice::ReadOnly)) return "MIT licence";
    static const QRegularExpression withinParagraph("(?<!\n)\n(?!\n)");
    return QString::fromUtf8(file.readAll()).trimmed().replace(withinParagraph, " ");
}

QLabel* Text(const QString& html) {
    auto* const label = new QLabel(html);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    return label;
}

}  // namespace

QString AboutWindow::BuildText() {
    return QString("%1 %2\nBuilt with %3 for %4\nQt %5 (built with %6)\n%7")
        .arg(QApplication::applicationName(), QApplication::applicationVersion(), Compiler(),
             QSysInfo::buildAbi(), QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR),
             QSysInfo::prettyProductName());
}

AboutWindow::AboutWindow(QWidget* parent) : QDialog(parent) {
    setObjectName("AboutWindow");
    setWindowTitle("About Ladderwise");
    auto* const grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->setHorizontalSpacing(18);
    auto* const icon = new QLabel;
    icon->setPixmap(QIcon(":/icons/ladderwise.png").pixmap(QSize(IconSize, IconSize)));
    grid->addWidget(icon, 0, 0, 3, 1, Qt::AlignTop);
    grid->addWidget(Text(QString("<h2>%1 %2</h2>")
                             .arg(QApplication::applicationName(),
                                  QApplication::applicationVersion().toHtmlEscaped())),
                    0, 1);
    grid->addWidget(Text("Designs and simulates radio-frequency LC filters."), 1, 1);
    auto* const build = Text(BuildText().section('\n', 1));
    build->setObjectName("AboutBuild");
    grid->addWidget(build, 2, 1);
    grid->addWidget(Text("Libraries: Qt (GNU LGPL, version 3) for windows and printing; the "
                         "calculation needs none but the language's own."),
                    3, 0, 1, 2);
    auto* const licence = new QPlainTextEdit(LicenceText(), this);
    licence->setObjectName("AboutLicence");
    licence->setAccessibleName("Licence");
    licence->setReadOnly(true);
    licence->setTabChangesFocus(true);
    licence->setMinimumWidth(licence->fontMetrics().averageCharWidth() * TextColumns);
    licence->setMinimumHeight(licence->fontMetrics().lineSpacing() * 4);
    grid->addWidget(licence, 4, 0, 1, 2);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setText("&Close");  // a mnemonic on every desktop
    auto* const copy = buttons->addButton("C&opy", QDialogButtonBox::ActionRole);
    copy->setToolTip("Copies version and build, for a report");
    auto* const qt = buttons->addButton("About &Qt", QDialogButtonBox::ActionRole);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    grid->addWidget(buttons, 5, 0, 1, 2);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(copy, &QPushButton::clicked, this,
            [] { QApplication::clipboard()->setText(BuildText()); });
    connect(qt, &QPushButton::clicked, qApp, &QApplication::aboutQt);
    buttons->button(QDialogButtonBox::Close)->setFocus();
}

}  // namespace ladderwise
