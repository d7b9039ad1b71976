// The host's document manager, the subset the module uses: the open documents with their databases,
// the current and active document, locks, and command strings sent to a document. The host starts with
// one untitled document holding an empty drawing.
//
// sendStringToExecute runs nothing itself: it queues the string. The host program (qxcad) drains the
// queue with TakePendingCommands() after each command and runs what it finds, oldest first.
#pragma once

#include "drawing/model/AcDbDatabase.h"
#include "support/CArray.h"

#include <memory>
#include <vector>

using HINSTANCE = void*;

namespace AcAp {
enum DocLockMode : int { kNone = 0, kAutoWrite = 1, kNotLocked = 2, kWrite = 4, kProtectedAutoWrite = 20, kRead = 32,
                         kXWrite = 64 };
}

class QX_API AcApDocument {
public:
    explicit AcApDocument(CString fileName, std::unique_ptr<AcDbDatabase> database);
    AcApDocument(const AcApDocument&) = delete;
    AcApDocument& operator=(const AcApDocument&) = delete;

    // The full path of the drawing, or "DrawingN.dwg" for an untitled one.
    const CString& fileName() const { return m_fileName; }
    AcDbDatabase* database() const { return m_database.get(); }
    int lockCount() const { return m_lockCount; }

    // The automation's Document.SendCommand: the document records what it was sent, in order.
    void SendCommand(const CString& text) { m_sentCommands.Add(text); }
    const CStringArray& SentCommands() const { return m_sentCommands; }

private:
    friend class AcApDocManager;

    CString m_fileName;
    std::unique_ptr<AcDbDatabase> m_database;
    int m_lockCount = 0;
    CStringArray m_sentCommands;
};

// Walks the open documents in the order they were opened.
class QX_API AcApDocumentIterator {
public:
    explicit AcApDocumentIterator(std::vector<AcApDocument*> documents) : m_documents(std::move(documents)) {}
    bool done() const { return m_index >= m_documents.size(); }
    void step() { ++m_index; }
    AcApDocument* document() const { return done() ? nullptr : m_documents[m_index]; }

private:
    std::vector<AcApDocument*> m_documents;
    size_t m_index = 0;
};

struct QX_API PendingCommand {
    AcApDocument* document;
    CString text;
};

class QX_API AcApDocManager {
public:
    AcApDocManager();
    ~AcApDocManager();

    AcApDocument* curDocument() const { return m_current; }
    AcApDocument* mdiActiveDocument() const { return m_active; }
    int documentCount() const { return static_cast<int>(m_documents.size()); }
    std::unique_ptr<AcApDocumentIterator> newAcApDocumentIterator() const;

    Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kWrite,
                                   const char16_t* globalCommandName = nullptr,
                                   const char16_t* localCommandName = nullptr, bool prompt = true);
    Acad::ErrorStatus unlockDocument(AcApDocument* document);
    Acad::ErrorStatus setCurDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kNone, bool activate = false);
    Acad::ErrorStatus activateDocument(AcApDocument* document, bool passScript = false);
    // Queues the text for the document; see TakePendingCommands.
    Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const CString& text, bool activate = true,
                                          bool wrapUpInactiveDoc = false, bool echoString = true);

    // The automation's Documents.Open: reads the drawing into a new document that becomes current and
    // active, or gives the document that already holds that path. Null when the drawing does not read.
    // With SDI set the new drawing takes the place of the current document.
    AcApDocument* openDocument(const CString& path, bool readOnly = false);
    // The same with the drawing already read from that path (null: read it now).
    AcApDocument* openDocument(const CString& path, bool readOnly, std::unique_ptr<AcDbDatabase> alreadyRead);
    // The automation's Document.Close, without saving.
    Acad::ErrorStatus closeDocument(AcApDocument* document);

    // The resources that dialogs load from: a module shows its own dialog between a push of its handle and
    // the matching pop. The pushes are kept as a stack; a pop of an empty stack does nothing.
    void pushResourceHandle(HINSTANCE resources) { m_resourceHandles.push_back(resources); }
    void popResourceHandle() {
        if (!m_resourceHandles.empty()) m_resourceHandles.pop_back();
    }
    // The handle pushed last and not yet popped; null when none is (the host's own resources).
    HINSTANCE currentResourceHandle() const { return m_resourceHandles.empty() ? nullptr : m_resourceHandles.back(); }
    int resourceHandleDepth() const { return static_cast<int>(m_resourceHandles.size()); }

    // For the host program: the strings queued by sendStringToExecute, oldest first; the queue is emptied.
    std::vector<PendingCommand> TakePendingCommands();
    // For the host program's start and tests: one untitled document, nothing queued.
    void reset();

private:
    AcApDocument* addDocument(std::unique_ptr<AcApDocument> document);
    bool holds(const AcApDocument* document) const;

    std::vector<std::unique_ptr<AcApDocument>> m_documents;
    AcApDocument* m_current = nullptr;
    AcApDocument* m_active = nullptr;
    std::vector<PendingCommand> m_pending;
    std::vector<HINSTANCE> m_resourceHandles;
    int m_untitled = 0;
};

QX_API AcApDocManager* acDocManagerPtr();

// The database that database operations work on unless told otherwise.
class QX_API AcDbHostApplicationServices {
public:
    // The database set last, or the current document's when none is set.
    AcDbDatabase* workingDatabase() const;
    void setWorkingDatabase(AcDbDatabase* database) { m_working = database; }

private:
    friend class AcApDocManager;
    AcDbDatabase* m_working = nullptr;
};

QX_API AcDbHostApplicationServices* acdbHostApplicationServices();
// Shows the command prompt again after a document switch; nothing to do without a screen.
QX_API void acedPostCommandPrompt();
