// AcDbObject: what every object of a drawing has: handle, id, owner, xdata by application and an
// extension dictionary. Objects live in their database; opening is a look-up and closing releases nothing.
#pragma once

#include "drawing/model/AcDbCore.h"
#include "drawing/model/Resbuf.h"
#include "drawing/model/XDataList.h"

#include <string_view>
#include <vector>

class AcDbNamePool;

class QX_API AcDbObject {
public:
    AcDbObject() = default;
    virtual ~AcDbObject();
    AcDbObject(const AcDbObject&) = delete;
    AcDbObject& operator=(const AcDbObject&) = delete;

    // From the arena of the reader at work on this thread (AcDbArenaScope), else from the heap.
    static void* operator new(size_t size);
    static void operator delete(void* memory) noexcept;

    static AcDbObject* cast(AcDbObject* object) { return object; }
    // The DXF name of the object's kind ("MTEXT", "DICTIONARY", ...).
    virtual std::string_view dxfName() const = 0;

    AcDbObjectId objectId() const { return AcDbObjectId::fromObject(const_cast<AcDbObject*>(this)); }
    AcDbHandle objectHandle() const { return m_handle; }
    void getAcDbHandle(AcDbHandle& handle) const { handle = m_handle; }
    AcDbDatabase* database() const { return m_database; }
    AcDbObjectId ownerId() const { return m_owner; }
    void setOwnerId(AcDbObjectId owner) { m_owner = owner; }

    bool isErased() const { return m_erased; }
    Acad::ErrorStatus erase(bool erasing = true);

    // Closing ends a write; there is nothing to release.
    Acad::ErrorStatus close();
    bool isWriteEnabled() const { return m_writeEnabled; }
    void upgradeOpen();

    // A new chain with the 1001 item and the items of that application (names compared ignoring case),
    // or null. A null or empty name gives the xdata of every application, one after the other.
    resbuf* xData(const char16_t* application = nullptr) const;
    // Sets the xdata of each application that the chain names in a 1001 item; an application with no
    // items after its 1001 item loses its xdata.
    Acad::ErrorStatus setXData(const resbuf* chain);
    // The same on the kept form; empty items remove the application.
    void setXDataItems(const CString& application, ResItems items);
    const XDataList& xDataApps() const { return m_xdata; }
    // For readers that fill a drawing: xdata as stored, an application with no items included; the names
    // come from namePool().
    void setXDataApps(XDataList apps) { m_xdata = std::move(apps); }
    // Where the object's shared names live: its database's pool, or the pool of objects in no database.
    AcDbNamePool& namePool() const;
    const XDataApp* findXData(std::u16string_view application) const;

    AcDbObjectId extensionDictionary() const { return m_extensionDictionary; }
    void setExtensionDictionary(AcDbObjectId dictionary) { m_extensionDictionary = dictionary; }

    // For the database that takes the object in.
    void attachTo(AcDbDatabase* database, AcDbHandle handle) { m_database = database; m_handle = handle; }
    void setOpenedForWrite(bool write) { if (write) upgradeOpen(); }

private:
    AcDbDatabase* m_database = nullptr;
    AcDbHandle m_handle;
    AcDbObjectId m_owner;
    AcDbObjectId m_extensionDictionary;
    XDataList m_xdata;
    bool m_erased = false;
    bool m_writeEnabled = false;
};

// An object whose kind the model does not know: kept for its handle, owner, xdata and extension
// dictionary, so that links to it resolve and the entity's data can still be read.
class QX_API AcDbUnknownObject : public AcDbObject {
public:
    explicit AcDbUnknownObject(std::string_view dxfName) : m_dxfName(dxfName) {}
    std::string_view dxfName() const override { return m_dxfName; }

private:
    std::string m_dxfName;
};
