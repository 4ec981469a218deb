#pragma once

#include <QWidget>
#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The first information tab: what to update, the download button and the warning. The
// download session drives these controls; this class only builds them.
class DownloadPage : public QWidget {
    Q_OBJECT
public:
    explicit DownloadPage(QWidget* parent = nullptr);

    QWidget* picFrame;
    QGroupBox* fraMAJ;
    std::array<QCheckBox*, 6> chkMAJ{};
    std::array<QLabel*, 6> lblCHK{};
    QLineEdit* txtExpList;
    QPushButton* cmdOK;
    QLabel* lblAttention;

    // Captions of the current language, in the main window's caption order.
    void labelUpdateFrame();
    void labelChoices();
    void labelWarning();
    void labelDownloadButton();

    // picFrame takes the whole tab again (the Alt + arrow keys may have moved it).
    void fitFrame();

protected:
    void resizeEvent(QResizeEvent* event) override;
};
