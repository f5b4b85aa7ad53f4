// The main menu panel (mode 1): the heading, the mill and the six entries.
#include "core/artwork.h"
#include "core/main_panels.h"

#include <QKeyEvent>
#include <QMouseEvent>

const QColor kMenuBlue(0x1d, 0x4e, 0xd8);
const QColor kMenuRed(0xd9, 0x22, 0x1c);

PictureButton::PictureButton(QWidget *parent) : QLabel(parent)
{
    setAlignment(Qt::AlignCenter);
    setCursor(Qt::PointingHandCursor);
}

void PictureButton::mouseReleaseEvent(QMouseEvent *e)
{
    if (isEnabled() && e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()))
        emit clicked();
}

MenuEntry::MenuEntry(int index, QWidget *parent) : QLabel(parent), m_index(index)
{
    setTextInteractionFlags(Qt::NoTextInteraction);   // read-only, no caret, no selection
    // After the flags above, which switch both of these off.
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::PointingHandCursor);
    QFont f = font();
    f.setPointSize(15);
    setFont(f);
    setContentsMargins(14, 0, 8, 0);
    setForeColor(kMenuBlue);
}

void MenuEntry::setForeColor(const QColor &c)
{
    m_color = c;
    // Red is the entry under the mouse or with the focus: a light band marks it as well.
    const bool hot = c == kMenuRed;
    setStyleSheet(QStringLiteral("MenuEntry { color: %1; border-radius: 6px; background: %2; %3 } "
                                 "MenuEntry:disabled { color: #8a96a3; }")
                      .arg(c.name(), hot ? QStringLiteral("#fdecea") : QStringLiteral("transparent"),
                           hot ? QStringLiteral("border-left: 4px solid %1;").arg(c.name())
                               : QStringLiteral("border-left: 4px solid transparent;")));
}

void MenuEntry::mouseMoveEvent(QMouseEvent *e)
{
    // Taken here: passed on, the panel under the entry would turn every entry blue again.
    e->accept();
    emit mouseMoved(m_index);
}

void MenuEntry::mouseReleaseEvent(QMouseEvent *e)
{
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint()))
        emit clicked(m_index);
}

void MenuEntry::keyReleaseEvent(QKeyEvent *e)
{
    // From the keyboard the entry acts when Enter or Space comes up, so the key is already
    // released when the next screen appears.
    if (!e->isAutoRepeat() && (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter || e->key() == Qt::Key_Space))
        emit clicked(m_index);
    else
        QLabel::keyReleaseEvent(e);
}

void MenuEntry::focusInEvent(QFocusEvent *e)
{
    QLabel::focusInEvent(e);
    emit gotFocus(m_index);
}

void MenuEntry::focusOutEvent(QFocusEvent *e)
{
    QLabel::focusOutEvent(e);
    emit lostFocus(m_index);
}

PicMenu::PicMenu(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picMenu"));
    setAccessibleName(QStringLiteral("Main menu"));
    setMouseTracking(true);
    setFixedSize(660, 440);
    setStyleSheet(QStringLiteral("PicMenu { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }"));
    imgHead = new QLabel(this);
    imgHead->setObjectName(QStringLiteral("imgHead"));
    imgHead->setAccessibleName(QStringLiteral("Brantok"));
    imgHead->setPixmap(HeadArt(600, 104));
    imgHead->setGeometry(30, 12, 600, 104);
    imgHead->setMouseTracking(true);
    imgMill = new QLabel(this);
    imgMill->setObjectName(QStringLiteral("imgMill"));
    imgMill->setAccessibleName(QStringLiteral("The EMCO F1 milling machine"));
    imgMill->setPixmap(MillArt(180, 260));
    imgMill->setGeometry(34, 140, 180, 260);
    imgMill->setMouseTracking(true);
    const std::pair<const char *, const char *> entries[] = {
        {"Use the keyboard to move the tool", "Keyboard"},
        {"Mill a part", "Mill"},
        {"See the Tool Data Table", "ToolData"},
        {"Measure the Tool Offsets", "Offsets"},
        {"Find out about billet size and placing", "Billet"},
        {"Exit the program", "Exit"},
    };
    for (int i = 0; i < 6; ++i) {
        auto *e = new MenuEntry(i, this);
        e->setObjectName(QStringLiteral("txtMenu%1").arg(i));
        e->setText(QString::fromLatin1(entries[i].first));
        e->tag = QString::fromLatin1(entries[i].second);
        e->setGeometry(236, 146 + i * 44, 400, 38);
        txtMenu[static_cast<size_t>(i)] = e;
    }
}

void PicMenu::mouseMoveEvent(QMouseEvent *e)
{
    emit mouseMoved();
    QFrame::mouseMoveEvent(e);
}
