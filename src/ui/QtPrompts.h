#pragma once
// The prompts seam on real windows: QMessageBox, QFileDialog, the override cursor.
#include "platform/Prompts.h"
#include "platform/System.h"

#include <QPointer>
#include <QWidget>

namespace steward {

class QtPrompts final : public Prompts {
public:
    Answer messageBox(const MessageBoxRequest& request) override;
    bool fileDialog(FileDialogState& state, bool open) override;
    int screenPointer() const override;
    void setScreenPointer(int value) override;
    void processEvents() override;

    /// The window that owns the boxes and dialogs: the main window while it lives.
    void setOwner(QWidget* owner) { m_owner = owner; }
    QWidget* owner() const { return m_owner; }

private:
    QPointer<QWidget> m_owner;
    int m_pointer = pointer::Default;
};

/// The file that an open dialog chose. The desktop's own dialog appends the default
/// extension to every name without a dot, also to an existing file such as a server
/// binary without extension; the file as the user picked it wins when only it exists.
QString openedFile(const QString& selected, const QString& defaultExt);

class QtBeeper final : public Beeper {
public:
    void beep() override;
};

} // namespace steward
