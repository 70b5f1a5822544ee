#include "platform/Clock.h"

#include <QLocale>

namespace steward {

QDateTime SystemClock::now() const { return QDateTime::currentDateTime(); }

QString SystemClock::longDate(const QDate& date) const { return QLocale::system().toString(date, QLocale::LongFormat); }

QString SystemClock::timeText(const QTime& time) const
{
    return QLocale::system().toString(time, QLocale::ShortFormat);
}

} // namespace steward
