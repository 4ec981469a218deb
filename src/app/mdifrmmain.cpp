#include "app/mdifrmmain.h"

#include "app/messages.h"
#include "app/prompts.h"
#include "app/version.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QStyle>
#include <QToolBar>

namespace {

struct ToolButton {
    const char* key;
    QStyle::StandardPixmap icon;
};

// The frame's buttons; only their keys decide what a click does.
const ToolButton ToolButtons[] = {
    {"Centrer", QStyle::SP_DesktopIcon},           {"Check", QStyle::SP_DialogApplyButton},
    {"Config", QStyle::SP_FileDialogDetailedView}, {"Print1", QStyle::SP_DriveFDIcon},
    {"Modify", QStyle::SP_FileDialogContentsView}, {"Stop", QStyle::SP_BrowserStop},
};

} // namespace

MDIfrmMain::MDIfrmMain(QWidget* parent) : QMainWindow(parent), Toolbar1(new QToolBar(this)) {
    QApplication::setApplicationName(LoadText(0));
    setWindowTitle(VersionedTitle());
    Toolbar1->setObjectName(QStringLiteral("Toolbar1"));
    Toolbar1->setMovable(false);
    Toolbar1->setIconSize(QSize(16, 16));
    for (const ToolButton& button : ToolButtons) {
        const QString key = QString::fromLatin1(button.key);
        QAction* action = Toolbar1->addAction(style()->standardIcon(button.icon), key);
        action->setObjectName(key);
        connect(action, &QAction::triggered, this, [this, key] { ButtonClick(key); });
    }
    addToolBar(Qt::TopToolBarArea, Toolbar1);
}

void MDIfrmMain::ButtonClick(const QString& key) {
    static const QStringList pending = {QStringLiteral("Check"), QStringLiteral("Config"),
                                        QStringLiteral("Print1"), QStringLiteral("Modify"),
                                        QStringLiteral("Stop")};
    if (pending.contains(key))
        MsgBox(QStringLiteral("Ajouter le code du bouton '") + key + QStringLiteral("'."));
}

void MDIfrmMain::closeEvent(QCloseEvent* event) {
    if (unloaded_ || (onQueryUnload && !onQueryUnload())) {
        event->setAccepted(unloaded_);
        return;
    }
    unloaded_ = true;
    if (onUnload)
        onUnload();
    event->accept();
}
