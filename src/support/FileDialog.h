#pragma once
// A thin wrapper of the open and save dialogs: properties in, a chosen file out.
#include "platform/Prompts.h"

namespace steward {

class AppContext;

class CFileDialog : public FileDialogState {
public:
    explicit CFileDialog(AppContext& app) : m_app(app) {}

    /// The open dialog for fOpen, else the save dialog. True when a file was chosen; on
    /// cancel FileName and FileTitle keep their old texts.
    bool Show(bool fOpen);

private:
    AppContext& m_app;
};

/// Cuts a buffer at the first pair of NULs and turns each single NUL before it into a
/// blank; a text without a pair comes back as it is.
QString TrimNulls(const QString& text);

/// Sets and restores the screen's mouse pointer.
class CCursor {
public:
    explicit CCursor(Prompts& prompts);
    ~CCursor();
    CCursor(const CCursor&) = delete;
    CCursor& operator=(const CCursor&) = delete;

    void SetCursor(int cursor = pointer::Default);
    void RestoreCursor();
    int stored() const { return m_stored; }

private:
    Prompts& m_prompts;
    int m_stored;
};

} // namespace steward
