#include "fileops/exchange/caughterror.h"

#include <exception>
#include <new>

QString CaughtError::text()
{
    // The exception that the caller is handling; without one this would end the program.
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return tr("There is not enough memory.");
    } catch (const std::exception &error) {
        return tr("Something unexpected went wrong: %1").arg(QString::fromLocal8Bit(error.what()));
    } catch (...) {
        return tr("Something unexpected went wrong.");
    }
}
