#pragma once

#include "photofolders.h"
#include "photorowinserter.h"

// The INSERT of a photo's PHOTOINFO row from the values a read gives
// (PhotoRowInserter::infoPlaceholders): the file's path among them goes in as its folder's id.
class PhotoInfoInserter : public PhotoRowInserter
{
public:
    explicit PhotoInfoInserter(const QSqlDatabase &db);

    bool insert(const QVariantList &values) override;

    // The placeholders of PHOTOINFO's INSERT: the info placeholders with ":folder" for ":path".
    static const QStringList &storedPlaceholders();

private:
    const qsizetype pathIndex;
    PhotoFolders folders;
    std::unique_ptr<PhotoRowInserter> rows;
};
