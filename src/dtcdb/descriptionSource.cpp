#include "dtcdb/descriptionSource.h"

#include "dtcdb/databaseKind.h"
#include "dtcdb/dtcText.h"
#include "shared/module1.h"

namespace zint {

bool DtcDescriptionSource::available() const { return isSetUp(databasePath_) || fileExists(shippedText_); }

std::unique_ptr<DtcDatabase> DtcDescriptionSource::openDatabase() const
{
    if (isSetUp(databasePath_) || !fileExists(shippedText_))
        return DtcDatabase::openForReading(databasePath_);
    try {
        return DtcDatabase::createInMemory(
            [this](DtcDatabase& database) { importDtcText(database, shippedText_, {}, unwatched); });
    } catch (const FileError& error) {
        throw DatabaseError(error.what());
    }
}

} // namespace zint
