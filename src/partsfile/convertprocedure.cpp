// Convert as the desktop program runs it: on the shared data store, with its questions, the
// progress on the splash window and its error window.
#include "partsfile/modnvconvert.h"

#include "app/appstate.h"
#include "app/events.h"
#include "app/frmerrmsg.h"
#include "app/frmsplash.h"
#include "app/installpath.h"
#include "app/mdifrmmain.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "data/moddata.h"
#include "dbase/dberror.h"

#include <QApplication>
#include <QDir>
#include <QLabel>

namespace modNVConvert {

namespace {

template <typename Window> Window* openWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<Window*>(widget); window && window->isVisible())
            return window;
    return nullptr;
}

// The conversion's progress goes to the splash window's status label.
class SplashProgress final : public ConversionObserver {
public:
    void progress(int percent) override {
        frmSplash* splash = openWindow<frmSplash>();
        if (!splash)
            return;
        QLabel* status = splash->Label1;
        status->setText(ProgressText(percent));
        // The label is sized for its start-up text; the progress is longer. It grows to the
        // left, its right edge staying where it is.
        const int needed = status->sizeHint().width();
        if (needed > status->width()) {
            QRect place = status->geometry();
            place.setLeft(place.right() + 1 - needed);
            status->setGeometry(place);
        }
    }
    void letEventsRun() override { DoEvents(); }
};

void showConvertError(qint64 number, const QString& description) {
    App().ErrorText = QStringLiteral("errConvert: \r\n") + LoadText(137) + QStringLiteral("\r\n") +
                      QString::number(number) + u' ' + description;
    frmErrMsg error;
    error.exec();
}

// The rebuild ends the program: the frame goes without asking.
bool rebuildAndEnd() {
    MsgBox(LoadText(133), Buttons::Ok, Icon::Information);
    ConversionObserver quiet;
    RebuildOldTable(connData, quiet);
    App().QuitWithoutAsking = true;
    if (MDIfrmMain* frame = openWindow<MDIfrmMain>())
        frame->close();
    return false;
}

// False when the user refused the conversion: the program ends.
bool convertWhenOld() {
    if (rsPrixList.fieldCount() >= ConvertedFieldCount) {
        FinishConversion(connData);
        return true;
    }
    if (MsgBox(LoadText(80), Buttons::OkCancel) != Answer::Ok) {
        MsgBox(LoadText(82));
        App().QuitWithoutAsking = true;
        return false;
    }
    DoEvents();
    SplashProgress splash;
    ConvertTable(connData, splash);
    MsgBox(LoadText(81));
    return true;
}

bool convertOrRebuild(bool forced) {
    QDir::setCurrent(ResolveInstallPath(App().DataPath));
    ConversionObserver quiet;
    SwapProgramFile(App().DataPath, quiet);
    if (forced)
        return rebuildAndEnd();
    if (!convertWhenOld())
        return false;
    rsPrixList.requery();
    rsCataList.requery();
    return true;
}

} // namespace

bool Convert(bool& forced) {
    try {
        return convertOrRebuild(forced);
    } catch (const DbError& error) {
        showConvertError(error.number(), error.description());
    } catch (const std::exception& error) {
        showConvertError(DbErrors::Fail, QString::fromLocal8Bit(error.what()));
    }
    return false;
}

} // namespace modNVConvert
