#pragma once
// A progress window that only remembers what the scan told it.
#include "maps/ScanProgress.h"

#include <QStringList>
#include <vector>

namespace steward::testing {

class RecordingScanProgress : public ScanProgress {
public:
    void show() override
    {
        loaded = visible = true;
        events << QStringLiteral("show");
    }
    void hide() override
    {
        visible = false;
        events << QStringLiteral("hide");
    }
    void unload() override
    {
        loaded = visible = false;
        events << QStringLiteral("unload");
    }
    void setActivity(const QString& text) override
    {
        activity = text;
        activities << text;
    }
    void setActivityVisible(bool v) override { activityVisible = v; }
    void setMaximum(int m) override { maximum = m; }
    void setValue(int v) override
    {
        value = v;
        values.push_back(v);
        if (v > maximum)
            overshoot = true;
    }
    void setBusy(bool b) override
    {
        busy = b;
        events << (b ? QStringLiteral("busy") : QStringLiteral("idle"));
    }

    bool loaded = false;
    bool visible = false;
    bool busy = false;
    bool activityVisible = false;
    bool overshoot = false;
    QString activity;
    QStringList activities;
    QStringList events;
    int maximum = 0;
    int value = 0;
    std::vector<int> values;
};

} // namespace steward::testing
