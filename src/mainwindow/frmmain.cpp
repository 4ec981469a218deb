#include "mainwindow/frmmain.h"

#include "app/appstate.h"
#include "app/events.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "comms/bulletinpage.h"
#include "comms/downloadpage.h"
#include "data/moddata.h"
#include "dbase/dberror.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "partsfile/partsearchpane.h"
#include "pricelists/configeditor.h"
#include "pricelists/configpane.h"
#include "pricelists/explistrules.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/treepanes.h"
#include "pricelists/treerules.h"

#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <cstdlib>
#include <utility>

namespace {
const int KeyStepTwips = 120;
} // namespace

frmMain::frmMain(QWidget* parent)
    : QWidget(parent), Picture1(new CommandStrip(this)), panesArea(new QWidget(this)),
      tbsInfo(nullptr), downloadPage(nullptr), configPage(nullptr), bulletinPage(nullptr),
      partSearchPane(nullptr) {
    setObjectName(QStringLiteral("frmMain"));
    picMenu = Picture1->picMenu;
    lblMenu = Picture1->lblMenu;
    for (int i = 0; i < 3; ++i) {
        picForm[i] = new QWidget(panesArea);
        picForm[i]->setObjectName(QStringLiteral("picForm%1").arg(i));
        picForm[i]->setLayout(new QVBoxLayout);
        picForm[i]->layout()->setContentsMargins(0, 0, 0, 0);
    }
    for (int i = 0; i < 2; ++i) {
        picSplitter[i] = new QWidget(panesArea);
        picSplitter[i]->setObjectName(QStringLiteral("picSplitter%1").arg(i));
        picSplitter[i]->setCursor(i == 0 ? Qt::SplitHCursor : Qt::SplitVCursor);
    }
    buildInformationTabs();
    composePriceLists();
    composeDownloads();
    for (MenuPicture* button : picMenu) {
        button->onPress = [this](int index) { return pressCommand(index); };
        button->onRelease = [this](int index) { releaseCommand(index); };
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(Picture1);
    layout->addWidget(panesArea, 1);
    qApp->installEventFilter(this);
}

frmMain::~frmMain() {
    qApp->removeEventFilter(this);
    downloadView.reset(); // before the trees its hooks read
    priceLists.reset();   // before the panes it lent its widgets to
}

void frmMain::buildInformationTabs() {
    tbsInfo = new QTabWidget(picForm[2]);
    tbsInfo->setObjectName(QStringLiteral("tbsInfo"));
    downloadPage = new DownloadPage;
    configPage = new QWidget;
    configPage->setLayout(new QVBoxLayout);
    configPage->layout()->setContentsMargins(0, 0, 0, 0);
    bulletinPage = new BulletinPage;
    partSearchPane = new PartSearchPane;
    for (QWidget* page :
         {static_cast<QWidget*>(downloadPage), configPage, static_cast<QWidget*>(bulletinPage),
          static_cast<QWidget*>(partSearchPane)})
        tbsInfo->addTab(page, QString());
    picForm[2]->layout()->addWidget(tbsInfo);
}

void frmMain::composePriceLists() {
    PriceListsUi::Parts parts;
    parts.window = this;
    parts.rsPrixList = &rsPrixList;
    parts.rsCataList = &rsCataList;
    parts.rsDepart = &rsDepart;
    parts.binding = &ConfigBinding();
    for (int i = 0; i < 7; ++i)
        parts.buttons.picMenu[i] = picMenu[i];
    parts.buttons.lblMenu = lblMenu;
    parts.partSearch = partSearchPane;
    priceLists = std::make_unique<PriceListsUi>(listState, parts);
    picForm[0]->layout()->addWidget(priceLists->listPane);
    picForm[1]->layout()->addWidget(priceLists->catPane);
    configPage->layout()->addWidget(priceLists->configPane);
    ExpListRules::install(downloadPage->txtExpList);
}

// ---- The download session: the Download tab's view, and what it needs of the window ----

void frmMain::composeDownloads() {
    DownloadView::Hooks hooks;
    hooks.enableOtherControls = [this](bool enabled) {
        if (!App().UpdateMode) {
            for (MenuPicture* button : picMenu)
                button->setEnabled(enabled);
        }
        priceLists->listPane->tbsList->setEnabled(enabled);
        priceLists->listPane->tvwList[listState.CurrentListTab]->setEnabled(enabled);
        priceLists->catPane->tbsCat->setEnabled(enabled);
        priceLists->catPane->tvwCat[listState.CurrentCatTab]->setEnabled(enabled);
    };
    hooks.savePendingChanges = [this] {
        return listState.ConfigDirty == Dirty::None ||
               priceLists->config().SauveChange(listState.ConfigDirty);
    };
    hooks.fillListChoice = [this](DownloadChoice& choice) {
        choice.listMarks = &listState.ListMarks;
        choice.listCount = listState.ListCount;
        choice.checkedCatCount = listState.CheckedCatCount;
        choice.catalogueChecked = [this](const QString& code) {
            const QTreeWidgetItem* node = priceLists->catPane->tvwCat[0]->node(CatalogueKey(code));
            return node && KeyedTree::isChecked(node);
        };
    };
    hooks.rebuildTrees = [this] { priceLists->refresh(); };
    // hooks.rebuildBulletins: SetupBulletin, given here with the newsletters.
    hooks.focusListTree = [this] {
        if (priceLists->listPane->tvwList[listState.CurrentListTab]->isEnabled())
            focusListTree();
    };
    hooks.closeProgram = [this] { window()->close(); };
    downloadView = std::make_unique<DownloadView>(*downloadPage, *this, std::move(hooks));
}

// A command button is pressed only when no configuration change waits to be saved.
bool frmMain::pressCommand(int) {
    return priceLists->saveIfDirty();
}

void frmMain::releaseCommand(int) {
    DoEvents();
    focusListTree();
}

void frmMain::saveChanges() {
    priceLists->config().SauveChange(listState.ConfigDirty);
}

void frmMain::focusListTree() {
    priceLists->listPane->tvwList[listState.CurrentListTab]->setFocus();
}

void frmMain::Load() {
    const bool updateMode = App().UpdateMode;
    loadStep([] { QApplication::setApplicationName(LoadText(0)); });
    loadStep([this] {
        listState.ConfigDirty = Dirty::None;
        listState.CurrentListTab = 0;
        listState.CurrentCatTab = 0;
        LastMouseDownX = LastMouseDownY = 2147483647;
    });
    loadStep([this, updateMode] {
        for (MenuPicture* button : picMenu) {
            button->setCursor(Qt::PointingHandCursor);
            button->setEnabled(!updateMode);
        }
    });
    Label();
    loadStep([this] { downloadView->session().SetupEnv(); });
    if (!updateMode) {
        // SetupBulletin (the newsletters) is called here, before the trees, once the
        // newsletters are part of the program.
        loadStep([this] { priceLists->refresh(); });
        return;
    }
    loadStep([this] {
        for (auto* box : downloadPage->chkMAJ)
            box->setEnabled(false);
    });
    loadStep(
        [this] { priceLists->listPane->tvwList.at(listState.CurrentListTab)->setVisible(true); });
    loadStep([this] { priceLists->catPane->tvwCat.at(listState.CurrentCatTab)->setVisible(true); });
}

// A failure during the load is reported with the contact line, the program will then close
// without asking, and the load goes on with its next step.
void frmMain::loadStep(const std::function<void()>& step) {
    try {
        step();
    } catch (const DbError& error) {
        showLoadError(error.number(), error.description());
    } catch (const std::exception& error) {
        showLoadError(0, QString::fromUtf8(error.what()));
    }
}

void frmMain::showLoadError(qint64 number, const QString& description) {
    MsgBox(QStringLiteral("ErrForm: ") + QString::number(number) + u' ' + description +
           QStringLiteral("\r\n") + App().ContactLine);
    App().QuitWithoutAsking = true;
}

void frmMain::Label() {
    try {
        priceLists->listPane->label();
        priceLists->catPane->label();
        static const int infoTabs[] = {1, 7, 9, 8};
        for (int i = 0; i < 4; ++i)
            tbsInfo->setTabText(i, LoadText(infoTabs[i]));
        priceLists->configPane->labelFields();
        downloadPage->labelUpdateFrame();
        priceLists->configPane->labelFrames();
        partSearchPane->label();
        downloadPage->labelChoices();
        bulletinPage->label();
        downloadPage->labelWarning();
        downloadPage->labelDownloadButton();
        static const int menuCaptions[][2] = {{0, 120}, {1, 121}, {3, 123}, {4, 124}, {2, 126}};
        for (const auto& caption : menuCaptions)
            lblMenu[caption[0]]->setText(LoadText(caption[1]));
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errLabel: ") + QString::fromUtf8(error.what()));
    }
}

double frmMain::TwipsPerPixel() const {
    return 1440.0 / logicalDpiX();
}

void frmMain::placeWindowInWorkArea() {
    QWidget* frame = window();
    const QScreen* screen = frame->screen() ? frame->screen() : QApplication::primaryScreen();
    if (frame == this || !screen)
        return;
    // The window's border and title bar lie inside the work area too, so that no part of the
    // window goes under a panel of the desktop.
    const QRect area = screen->availableGeometry();
    const QSize decoration = frame->frameGeometry().size() - frame->geometry().size();
    frame->move(area.topLeft());
    frame->resize(area.size() - decoration);
}

void frmMain::Activate() {
    try {
        placeWindowInWorkArea();
        placePanes();
        downloadPage->fitFrame();
        downloadPage->picFrame->setVisible(true);
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errActivate: ") + QString::fromUtf8(error.what()));
    }
}

void frmMain::placePanes() {
    const double dpi = logicalDpiX();
    const double innerWidth = PixelsToTwips(panesArea->width(), dpi);
    const double innerHeight = PixelsToTwips(panesArea->height(), dpi);
    const AppSettings& s = App().Settings;
    const PanePlacement placement = PlacePanes(innerWidth, innerHeight, s.Width, s.Height);
    const auto toPixels = [dpi](const TwipRect& r) {
        return QRect(TwipsToPixels(r.left, dpi), TwipsToPixels(r.top, dpi),
                     TwipsToPixels(r.width, dpi), TwipsToPixels(r.height, dpi));
    };
    for (int i = 0; i < 3; ++i)
        picForm[i]->setGeometry(toPixels(placement.pane[i]));
    for (int i = 0; i < 2; ++i)
        picSplitter[i]->setGeometry(toPixels(placement.splitter[i]));
}

PaneLayout frmMain::CurrentLayout() const {
    const double dpi = logicalDpiX();
    return {PixelsToTwips(picForm[0]->width(), dpi), PixelsToTwips(picForm[2]->y(), dpi),
            PixelsToTwips(panesArea->width(), dpi), PixelsToTwips(panesArea->height(), dpi)};
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layout()->activate();
    placePanes();
}

void frmMain::moveFrame(int dxTwips, int dyTwips) {
    const double dpi = logicalDpiX();
    QWidget* frame = downloadPage->picFrame;
    frame->move(frame->pos() + QPoint(TwipsToPixels(dxTwips, dpi), TwipsToPixels(dyTwips, dpi)));
}

void frmMain::openHelpPage() {
    QDesktopServices::openUrl(QUrl(LoadText(112)));
}

bool frmMain::KeyDown(int key, Qt::KeyboardModifiers modifiers) {
    const bool alt = modifiers & Qt::AltModifier;
    if (alt && !(modifiers & Qt::ShiftModifier)) {
        switch (key) {
        case Qt::Key_Left:
            moveFrame(-KeyStepTwips, 0);
            break;
        case Qt::Key_Right:
            moveFrame(KeyStepTwips, 0);
            break;
        case Qt::Key_Up:
            moveFrame(0, -KeyStepTwips);
            break;
        case Qt::Key_Down:
            moveFrame(0, KeyStepTwips);
            break;
        default:
            break;
        }
        return true;
    }
    if (alt)
        return true; // the splitter keys come with the splitters
    if (key == Qt::Key_F1) {
        openHelpPage();
        return true;
    }
    if (key == Qt::Key_F5) {
        focusListTree();
        saveChanges();
        return true;
    }
    return false;
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationStateChange) {
        const auto* change = static_cast<QApplicationStateChangeEvent*>(event);
        if (change->applicationState() != Qt::ApplicationActive)
            inAnotherProgram_ = true;
        return false;
    }
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget && widget->isWindow() && event->type() == QEvent::WindowActivate) {
        // The window is laid out afresh when it comes back from one of the program's own
        // windows (a dialog closing), not when the user comes back from another program.
        const bool fromAnotherProgram = std::exchange(inAnotherProgram_, false);
        if (widget == window() && !fromAnotherProgram)
            Activate();
        return false;
    }
    if (!widget || widget->window() != window())
        return false;
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Alt || key->key() == Qt::Key_Shift)
            return false;
        return KeyDown(key->key(), key->modifiers());
    }
    return false;
}

bool frmMain::QueryUnload() {
    AppState& app = App();
    try {
        if (downloadView->session().running())
            return false; // a transfer is running
        BindConfig(false);
        if (listState.ConfigDirty != Dirty::None)
            saveChanges();
        if (!app.QuitWithoutAsking &&
            MsgBox(LoadText(35), Buttons::YesNo, Icon::None) == Answer::No) {
            BindConfig(true);
            return false;
        }
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errQuery: ") + QString::fromUtf8(error.what()));
    }
    return true;
}

void frmMain::Unload() {
    try {
        downloadView->session().abortConnection();
        SaveSettings(settingsStore, App(), CurrentLayout());
        if (!App().UpdateMode)
            CloseData();
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errUnload: ") + QString::fromUtf8(error.what()));
        std::exit(0);
    }
}
