#pragma once

#include "desktop/gate/HandlerGate.h"
#include "ports/Screen.h"
#include "ports/Window.h"
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace velmorant {

/// A top-level widget as the logic sees it: places and sizes in twips, and a close that asks.
class QtWindow : public QObject, public Window {
    Q_OBJECT
  public:
    /// The widget is not owned; gate and screen must outlive this object.
    QtWindow(QWidget& widget, HandlerGate& gate, const Screen& screen);

    void show() override;
    void showModal() override;
    void close() override;
    void setForeground() override;
    void setCaption(const std::string& caption) override;
    void move(int left, int top) override;
    void resize(int width, int height) override;
    int left() const override;
    int top() const override;

    /// The user wants the window closed: the listener decides and calls close(). Without a listener
    /// the window closes.
    void onCloseRequest(GatedListener<> listener);
    /// After every change of size.
    void onResize(GatedListener<> listener);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void agreeOnPlace();

    QPointer<QWidget> m_widget;
    HandlerGate& m_gate;
    const Screen& m_screen;
    bool m_closing = false;
    GatedListener<> m_closeRequest;
    GatedListener<> m_resized;
};

} // namespace velmorant
