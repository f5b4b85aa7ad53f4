// The panels of the main window, one class per panel, each holding its controls under
// the names the rest of the program uses. One panel is up at a time; SetMode decides which.
// The panels whose screens are built by their own parts of the program (manual control,
// the wizards, the tool table, billet help) carry here only the controls that the main
// window itself touches; those parts add the rest in their own files.
#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>

#include <array>

class QGroupBox;
class QProgressBar;
class QPushButton;
class QTextEdit;
class QLineEdit;

// A picture that acts as a button (the spindle start and stop pictures).
class PictureButton : public QLabel {
    Q_OBJECT
public:
    explicit PictureButton(QWidget *parent = nullptr);
signals:
    void clicked();
protected:
    void mouseReleaseEvent(QMouseEvent *e) override;
};

// One entry of the main menu: read-only text that takes the focus, shows no caret, and
// is red under the mouse or with the focus, blue otherwise.
class MenuEntry : public QLabel {
    Q_OBJECT
public:
    MenuEntry(int index, QWidget *parent);
    int index() const { return m_index; }
    QString tag;                       // the action given to MenuAction
    void setForeColor(const QColor &c);
    QColor foreColor() const { return m_color; }
signals:
    void clicked(int index);
    void mouseMoved(int index);
    void gotFocus(int index);
    void lostFocus(int index);
protected:
    void mouseMoveEvent(QMouseEvent *e) override;
    void mouseReleaseEvent(QMouseEvent *e) override;
    void keyReleaseEvent(QKeyEvent *e) override;
    void focusInEvent(QFocusEvent *e) override;
    void focusOutEvent(QFocusEvent *e) override;
private:
    int m_index;
    QColor m_color;
};

// The colours of the main menu's entries.
extern const QColor kMenuBlue;
extern const QColor kMenuRed;

// Mode 1: the main menu.
class PicMenu : public QFrame {
    Q_OBJECT
public:
    explicit PicMenu(QWidget *parent);
    QLabel *imgHead;
    QLabel *imgMill;
    std::array<MenuEntry *, 6> txtMenu{};
signals:
    void mouseMoved();
protected:
    void mouseMoveEvent(QMouseEvent *e) override;
};

// Mode 2: manual control is the manual screen's own panel (link/keyboard_panel.h).

// Mode 3: the machining set-up wizard is the wizard's own panel (guide/setmill_panel.h).

// Mode 5: the tool table is the tool screens' own panel (tools/tooldatapanel.h).

// Mode 6: the machining display.
class PicMachining : public QFrame {
public:
    explicit PicMachining(QWidget *parent);
    QTextEdit *txtMillHeader;
    QTextEdit *rtbMillCode;
    QProgressBar *pgbMillProg;
    QLabel *lblEscape;
};

// Mode 7: the tool offset wizard is the wizard's own panel (guide/offset_panel.h).

// Mode 8: the subsequent-part choice is its own panel (guide/method_panel.h).

// Billet help, over whatever screen is up.
class PicBilletSize : public QFrame {
public:
    explicit PicBilletSize(QWidget *parent);
    QLabel *lblBilletTitle;
    QPushButton *cmdBilletReturn;
};

// The NC file's header beside the set-up wizard.
class PicHeader : public QFrame {
public:
    explicit PicHeader(QWidget *parent);
    QLabel *lblHeader;
    QTextEdit *rtbHeader;
};
