// The help button.
#include "controls/HelpButton.h"

#include <QPushButton>
#include <QWidget>

namespace ladderwise {

QPushButton* NewHelpButton(QWidget* parent, const char* name, HelpPage page,
                           const QString& bookmark) {
    auto* const button = new QPushButton("&Help", parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    button->setToolTip("Opens the help at the page of this window");
    QObject::connect(button, &QPushButton::clicked, button, [button, page, bookmark] {
        const QObject* root = button;
        while (root->parent())
            root = root->parent();
        for (QWidget* const window : root->findChildren<QWidget*>())
            if (auto* const help = dynamic_cast<HelpShower*>(window))
                return help->ShowPage(page, bookmark);
    });
    return button;
}

}  // namespace ladderwise
