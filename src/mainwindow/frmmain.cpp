#include "mainwindow/frmmain.h"

#include "app/appstate.h"
#include "app/events.h"
#include "app/frmoptions.h"
#include "app/help.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "comms/bulletinpage.h"
#include "comms/downloadpage.h"
#include "data/moddata.h"
#include "mainwindow/commandstrip.h"
#include "mainwindow/downloadview.h"
#include "mainwindow/splitterbars.h"
#include "partsfile/frmstock.h"
#include "partsfile/modnvconvert.h"
#include "partsfile/partsearchpane.h"
#include "pricelists/activation.h"
#include "pricelists/association.h"
#include "pricelists/configpane.h"
#include "pricelists/explistrules.h"
#include "pricelists/pricelistsui.h"
#include "pricelists/runguarded.h"
#include "pricelists/selectbyname.h"
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
const int PartsTab = 3; // the "Pièces" tab of tbsInfo

// The command strip's buttons, by their index in picMenu.
enum Command {
    SelectCommand = 0,
    ActivateCommand,
    ChangePartNumbers,
    Options,
    DeactivateCommand,
    AssociateCommand,
    DissociateCommand
};
// A failure during the load: the box gives the number and the description on one line.
const ErrorHandler LoadErrors{QStringLiteral("ErrForm: "), QStringLiteral(" "),
                              QStringLiteral("\r\n")};
} // namespace

frmMain::frmMain(QWidget* parent)
    : QWidget(parent), Picture1(new CommandStrip(this)), panesArea(new QWidget(this)) {
    setObjectName(QStringLiteral("frmMain"));
    for (int i = 0; i < 3; ++i) {
        picForm[i] = new QWidget(panesArea);
        picForm[i]->setObjectName(QStringLiteral("picForm%1").arg(i));
        picForm[i]->setLayout(new QVBoxLayout);
        picForm[i]->layout()->setContentsMargins(0, 0, 0, 0);
    }
    splitters = new SplitterBars(
        panesArea, picForm, [this] { return double(logicalDpiX()); }, this);
    buildPanes();
    composePriceLists();
    composeDownloads();
    for (MenuPicture* button : Picture1->picMenu) {
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
}

void frmMain::buildPanes() {
    listPane = new ListTreePane(picForm[0]);
    picForm[0]->layout()->addWidget(listPane);
    catPane = new CatTreePane(picForm[1]);
    picForm[1]->layout()->addWidget(catPane);
    tbsInfo = new QTabWidget(picForm[2]);
    tbsInfo->setObjectName(QStringLiteral("tbsInfo"));
    downloadPage = new DownloadPage(tbsInfo);
    configPane = new ConfigPane(tbsInfo);
    bulletinPage = new BulletinPage(tbsInfo);
    partSearchPane = new PartSearchPane(tbsInfo);
    for (QWidget* page :
         std::initializer_list<QWidget*>{downloadPage, configPane, bulletinPage, partSearchPane})
        tbsInfo->addTab(page, QString());
    picForm[2]->layout()->addWidget(tbsInfo);
    ExpListRules::install(downloadPage->txtExpList);
}

void frmMain::composePriceLists() {
    priceLists = new PriceListsUi({*listPane, *catPane, *configPane}, listState,
                                  {rsPrixList, rsCataList, &rsDepart, &ConfigBinding()}, this);
    connect(priceLists, &PriceListsUi::listShown, partSearchPane, &PartSearchPane::setGroupCode);
    connect(priceLists, &PriceListsUi::listTabShown, Picture1, &CommandStrip::showListTab);
    connect(priceLists, &PriceListsUi::catalogueNodeChosen, Picture1,
            &CommandStrip::showCatalogueChoice);
    listCommands.emplace(
        ListCommandContext{*priceLists,
                           listState,
                           *listPane,
                           *catPane,
                           {rsPrixList, rsCataList, &rsPrixCodes, &ConfigBinding()},
                           this});
}

// ---- The download session: the Download tab's view, and what it needs of the window ----

void frmMain::composeDownloads() {
    DownloadView::Hooks hooks;
    hooks.enableOtherControls = [this](bool enabled) {
        if (!App().UpdateMode) {
            for (MenuPicture* button : Picture1->picMenu)
                button->setEnabled(enabled);
        }
        listPane->enableTabs(listState.CurrentListTab, enabled);
        catPane->enableTabs(listState.CurrentCatTab, enabled);
    };
    hooks.savePendingChanges = [this] {
        return listState.ConfigDirty == Dirty::None || priceLists->saveChanges();
    };
    hooks.fillListChoice = [this](DownloadChoice& choice) {
        choice.listMarks = &listState.ListMarks;
        choice.listCount = listState.ListCount;
        choice.checkedCatCount = listState.CheckedCatCount;
        choice.catalogueChecked = [this](const QString& code) {
            return catPane->isCatalogueChecked(code);
        };
    };
    hooks.rebuildTrees = [this] { priceLists->refresh(); };
    hooks.rebuildBulletins = [this] { bulletinPage->SetupBulletin(); };
    hooks.focusListTree = [this] {
        if (listPane->isTreeEnabled(listState.CurrentListTab))
            focusListTree();
    };
    hooks.closeProgram = [this] { window()->close(); };
    downloadView = std::make_unique<DownloadView>(*downloadPage, *this, std::move(hooks));
}

// A command button is pressed only when no configuration change waits to be saved.
bool frmMain::pressCommand(int) {
    return priceLists->saveIfDirty();
}

void frmMain::releaseCommand(int index) {
    runCommand(index);
    DoEvents();
    focusListTree();
}

// The action of each button of the strip.
void frmMain::runCommand(int index) {
    switch (index) {
    case SelectCommand:
        downloadPage->picFrame->setVisible(false);
        SelectByName(*listCommands);
        downloadPage->picFrame->setVisible(true);
        break;
    case ActivateCommand:
        MPActivate(*listCommands);
        break;
    case ChangePartNumbers: {
        tbsInfo->setCurrentIndex(PartsTab);
        frmStock dialog(partSearchPane, this);
        dialog.exec();
        break;
    }
    case Options: {
        frmOptions dialog(this);
        dialog.exec();
        break;
    }
    case DeactivateCommand:
        MPDesactivate(*listCommands);
        break;
    case AssociateCommand:
    case DissociateCommand:
        AssociationCommand(*listCommands);
        break;
    default:
        break;
    }
}

void frmMain::focusListTree() {
    listPane->focusTree(listState.CurrentListTab);
}

void frmMain::Load() {
    const bool updateMode = App().UpdateMode;
    loadStep([] { QApplication::setApplicationName(LoadText(0)); });
    loadStep([this] {
        listState.ConfigDirty = Dirty::None;
        listState.CurrentListTab = 0;
        listState.CurrentCatTab = 0;
        splitters->forgetPress();
    });
    loadStep([this, updateMode] {
        for (MenuPicture* button : Picture1->picMenu) {
            button->setCursor(Qt::PointingHandCursor);
            button->setEnabled(!updateMode);
        }
    });
    Label();
    loadStep([this] { downloadView->session().SetupEnv(); });
    if (!updateMode) {
        loadStep([this] { bulletinPage->SetupBulletin(); });
        loadStep([this] { priceLists->refresh(); });
        return;
    }
    loadStep([this] {
        for (auto* box : downloadPage->chkMAJ)
            box->setEnabled(false);
    });
    loadStep([this] { listPane->showTree(listState.CurrentListTab); });
    loadStep([this] { catPane->showTree(listState.CurrentCatTab); });
}

// A failure during the load is reported with the contact line, the program will then close
// without asking, and the load goes on with its next step.
void frmMain::loadStep(const std::function<void()>& step) {
    if (RunGuarded(LoadErrors, step) != StepResult::Done)
        App().QuitWithoutAsking = true;
}

void frmMain::Label() {
    try {
        listPane->label();
        catPane->label();
        static const int infoTabs[] = {1, 7, 9, 8};
        for (int i = 0; i < 4; ++i) {
            tbsInfo->setTabText(i, LoadText(infoTabs[i]));
            tbsInfo->widget(i)->setAccessibleName(tbsInfo->tabText(i)); // for screen readers
        }
        configPane->labelFields();
        downloadPage->labelUpdateFrame();
        configPane->labelFrames();
        partSearchPane->label();
        downloadPage->labelChoices();
        bulletinPage->label();
        downloadPage->labelWarning();
        downloadPage->labelDownloadButton();
        Picture1->label();
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errLabel: ") + QString::fromUtf8(error.what()));
    }
}

double frmMain::TwipsPerPixel() const {
    return TwipsPerInch / logicalDpiX();
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

// The panes stand at the stored fractions until the dealer moves a splitter, and keep their
// proportions when the window changes size.
void frmMain::placePanes() {
    const AppSettings& s = App().Settings;
    splitters->fit({s.Width, s.Height});
}

PaneLayout frmMain::CurrentLayout() const {
    return splitters->currentLayout();
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
    if (alt) {
        splitters->moveByKey(key);
        return true;
    }
    if (key == Qt::Key_F1) {
        OpenGuide();
        return true;
    }
    if (key == Qt::Key_F12) {
        bool forced = true;
        modNVConvert::Convert(forced);
        return true;
    }
    if (key == Qt::Key_F5) {
        if (!priceLists->commitTyped())
            return true;
        // The focus landing on the tree may already have offered to save.
        focusListTree();
        priceLists->saveIfDirty();
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
        if (!priceLists->commitTyped())
            return false;
        BindConfig(false);
        priceLists->saveIfDirty();
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
