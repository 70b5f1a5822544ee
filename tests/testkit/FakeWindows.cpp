#include "testkit/FakeWindows.h"

#include "support/Errors.h"

namespace steward::testing {

void FakeFormLoadHost::enter(const QString& call)
{
    calls << call;
    if (onCall)
        onCall(call);
    if (failures.contains(call))
        raiseError(failures.value(call), {}, QStringLiteral("frmMain"));
}

void FakeFormLoadHost::setRotationColumns(const QList<int>& twips)
{
    enter(QStringLiteral("columns"));
    columns = twips;
}

void FakeFormLoadHost::setSizeTwips(int h, int w)
{
    enter(QStringLiteral("size"));
    height = h;
    width = w;
}

void FakeFormLoadHost::centerForm() { enter(QStringLiteral("center")); }

void FakeFormLoadHost::disableCloseMenu() { enter(QStringLiteral("disableClose")); }

ServerProfile* FakeWindowHost::loadMainWindow()
{
    calls << QStringLiteral("load");
    ++loads;
    profile = std::make_unique<ServerProfile>();
    MainFormLoad(m_app, *profile, form);
    if (afterLoad)
        afterLoad(*profile);
    return profile.get();
}

void FakeWindowHost::showMainWindow()
{
    calls << QStringLiteral("show");
    shown = true;
}

void FakeWindowHost::unloadMainWindow()
{
    calls << QStringLiteral("unloadMain");
    profile.reset();
    shown = false;
}

void FakeWindowHost::closeAllForms()
{
    calls << QStringLiteral("closeAll");
    profile.reset();
    shown = false;
}

void FakeWindowHost::unloadScanner() { calls << QStringLiteral("unloadScanner"); }

void FakeWindowHost::minimizeMainWindow() { calls << QStringLiteral("minimize"); }

} // namespace steward::testing
