#include "support/Errors.h"

namespace steward {

namespace {
// The program's own short description of a standard error number.
QString standardDescription(int number)
{
    switch (number) {
    case err::InvalidProcedureCall:
        return QStringLiteral("Invalid procedure call or argument");
    case err::Overflow:
        return QStringLiteral("Overflow");
    case err::SubscriptOutOfRange:
        return QStringLiteral("Subscript out of range");
    case err::TypeMismatch:
        return QStringLiteral("Type mismatch");
    case err::BadFileName:
        return QStringLiteral("Bad file name or number");
    case err::FileNotFound:
        return QStringLiteral("File not found");
    case err::InputPastEnd:
        return QStringLiteral("Input past end of file");
    case err::PermissionDenied:
        return QStringLiteral("Permission denied");
    case err::PathFileAccess:
        return QStringLiteral("Path/File access error");
    case err::PathNotFound:
        return QStringLiteral("Path not found");
    case err::ControlArrayElement:
        return QStringLiteral("Control array element doesn't exist");
    case err::AddressInUse:
        return QStringLiteral("Address in use");
    case err::IndexOutOfBounds:
        return QStringLiteral("Index out of bounds");
    default:
        return QStringLiteral("Application-defined or object-defined error");
    }
}
} // namespace

RuntimeError::RuntimeError(int number, QString description, QString source)
    : m_number(number),
      m_description(description.isEmpty() ? standardDescription(number) : std::move(description)),
      m_source(std::move(source)),
      m_what(QStringLiteral("Error %1: %2").arg(number).arg(m_description).toStdString())
{}

void raiseError(int number, const QString& description, const QString& source)
{
    throw RuntimeError(number, description, source);
}

} // namespace steward
