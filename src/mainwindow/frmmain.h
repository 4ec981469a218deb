#pragma once

#include "app/panelayout.h"
#include "app/settings.h"
#include "pricelists/listcommands.h"
#include "pricelists/pricelistsstate.h"

#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class BulletinPage;
class CatTreePane;
class CommandStrip;
class ConfigPane;
class DownloadPage;
class DownloadView;
class ListTreePane;
class MenuPicture;
class PartSearchPane;
class PriceListsUi;
class QTabWidget;
class SplitterBars;

// The main window: the command strip above three panes (the list trees, the catalogue trees,
// and the information tabs). It composes the parts of the program and wires them; their logic
// lives in their own classes.
class frmMain : public QWidget {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // The window's life, as the frame drives it.
    void Load();
    void Activate();
    // True when the window may close.
    bool QueryUnload();
    void Unload();
    // The form sees keys before its controls; true when the key was consumed.
    bool KeyDown(int key, Qt::KeyboardModifiers modifiers);

    // Sets every caption of the window in the current language.
    void Label();

    // The panes as they stand now, in twips (for saving the layout).
    PaneLayout CurrentLayout() const;
    double TwipsPerPixel() const;

    CommandStrip* Picture1; // the command strip: picMenu(0 to 6), lblMenu(0 to 4)
    QWidget* panesArea;
    std::array<QWidget*, 3> picForm{};
    // The bars picSplitter 0 and 1 between the panes, and their drag.
    SplitterBars* splitters = nullptr;
    ListTreePane* listPane = nullptr; // picForm 0
    CatTreePane* catPane = nullptr;   // picForm 1
    QTabWidget* tbsInfo = nullptr;    // picForm 2, with the four pages below
    DownloadPage* downloadPage = nullptr;
    ConfigPane* configPane = nullptr;
    BulletinPage* bulletinPage = nullptr;
    PartSearchPane* partSearchPane = nullptr;
    CRegSettings settingsStore; // where the settings go back at shut-down

    // Shared state of the window: the list selection, pending changes, current tabs and rows.
    PriceListState listState;
    PriceListsUi* priceLists = nullptr;
    // The download session and its view on the Download tab.
    std::unique_ptr<DownloadView> downloadView;
    // What the list commands of the strip (select, activate, associate) work on.
    std::optional<ListCommandContext> listCommands;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void buildPanes();
    void composePriceLists();
    void composeDownloads();
    bool pressCommand(int index);
    void releaseCommand(int index);
    void runCommand(int index);
    void focusListTree();
    void placePanes();
    void placeWindowInWorkArea();
    void moveFrame(int dxTwips, int dyTwips);
    void loadStep(const std::function<void()>& step);

    bool inAnotherProgram_ = false; // the user left for another program since the last activation
};
