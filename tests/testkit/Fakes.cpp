#include "testkit/Fakes.h"

namespace steward::testing {

namespace {
Answer defaultAnswer(const MessageBoxRequest& r)
{
    static const Answer sets[][3] = {
        {Answer::Ok, Answer::Ok, Answer::Ok},
        {Answer::Ok, Answer::Cancel, Answer::Cancel},
        {Answer::Yes, Answer::No, Answer::No},
        {Answer::Yes, Answer::No, Answer::Cancel},
        {Answer::Retry, Answer::Cancel, Answer::Cancel},
        {Answer::Abort, Answer::Retry, Answer::Ignore},
    };
    const int b = std::clamp(r.defaultButton, 0, 2);
    return sets[static_cast<int>(r.buttons)][b];
}
} // namespace

Answer FakePrompts::messageBox(const MessageBoxRequest& request)
{
    Answer a = defaultAnswer(request);
    if (!answers.empty()) {
        a = answers.front();
        answers.pop_front();
    }
    shown.push_back({request, a});
    return a;
}

bool FakePrompts::fileDialog(FileDialogState& state, bool open)
{
    dialogs.push_back({state, open});
    std::optional<QString> choice;
    if (!files.empty()) {
        choice = files.front();
        files.pop_front();
    }
    if (!choice)
        return false;
    state.FileName = *choice;
    const auto slash = choice->lastIndexOf(QLatin1Char('/'));
    state.FileTitle = slash < 0 ? *choice : choice->mid(slash + 1);
    return true;
}

QStringList FakePrompts::texts() const
{
    QStringList t;
    for (const Shown& s : shown)
        t << s.request.text;
    return t;
}

} // namespace steward::testing
