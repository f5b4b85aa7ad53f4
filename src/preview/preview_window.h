// The Preview window: the toolpath of an analysed file, zoomed with the mouse wheel and panned
// by dragging, with the machining time. Reached from the Mill menu (the last analysed file)
// and, later, from the set-up wizard once its file is analysed.
//
// It is modal: while it is up nothing is milled or jogged, so its painting (a big program
// takes a few tenths of a second after a zoom) can never hold up the link.
#pragma once

#include "preview/render.h"
#include "preview/toolpath.h"

#include <QDialog>
#include <QImage>
#include <QWidget>

class QAction;
class QLabel;
class QMenu;

// Shows the Preview window for an analysed file and returns when the operator closes it.
// A file that can't be read is said in a message box instead.
void ShowPreview(const QString &strAnalysedFile);

// Adds our entry "Pre&view Last Analysed File" to the Mill menu ahead of `before`. It is
// enabled when the main menu, the set-up wizard or the next-part choice is up and the last
// analysed file (gstrAnalysedFile) exists.
QAction *AddPreviewMenuEntry(QMenu *menu, QAction *before);

// The painted picture. Wheel: zoom about the cursor; drag: pan; double-click: fit again; the
// keys + - arrows Home do the same without a mouse.
class PreviewView : public QWidget {
    Q_OBJECT
public:
    explicit PreviewView(QWidget *parent = nullptr);
    void setToolpath(Toolpath path, const QString &title);
    const Toolpath &toolpath() const { return m_path; }
    const PreviewCamera &camera() const { return m_camera; }
    void fit();
    // Zoom by `factor` about pixel `at` (what a wheel turn does).
    void zoomAt(double factor, QPointF at);

protected:
    void paintEvent(QPaintEvent *e) override;
    void resizeEvent(QResizeEvent *e) override;
    void wheelEvent(QWheelEvent *e) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;
    void mouseReleaseEvent(QMouseEvent *e) override;
    void mouseDoubleClickEvent(QMouseEvent *e) override;
    void keyPressEvent(QKeyEvent *e) override;

private:
    void rerender();
    Toolpath m_path;
    QString m_title;
    PreviewCamera m_camera;
    QImage m_picture;          // the last drawing, shown shifted while a drag goes on
    QPointF m_dragFrom;
    QPointF m_dragBy;
    bool m_dragging = false;
};

class FrmPreview : public QDialog {
    Q_OBJECT
public:
    explicit FrmPreview(QWidget *parent = nullptr);
    // False (and `error` set) when the file can't be previewed.
    bool load(const QString &strAnalysedFile, QString &error);
    PreviewView *picPreview;
    QLabel *lblTime;
    QLabel *lblExtent;
};
