#pragma once
// frmAbout: the product's name, the version and the contact, in a marquee. A click
// anywhere or a key closes it; the mail label opens a mail to the author.
#include <QDialog>

class QLabel;
class QTimer;

namespace steward {

class AppContext;

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(AppContext& app, QWidget* parent = nullptr);
    ~frmAbout() override;

    /// True while an About window is loaded.
    static bool isLoaded();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void scroll();

    AppContext& m_app;
    QLabel* m_marquee;
    QLabel* m_mail;
    QWidget* m_viewport;
    QTimer* m_timer;
    int m_offset = 0;
};

/// The About command: refreshes the main window, shows frmAbout modally, shows the main window again.
void showAbout(AppContext& app, QWidget* mainWindow);

} // namespace steward
