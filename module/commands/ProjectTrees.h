// The trees and documents that a project command holds, each freed on every way out of the command: a tree
// made by the module goes with its destructor, a tree made by the cloud library with freeTreeInfo.
#pragma once

#include "exchange/dom/XmlDocument.h"
#include "platform/cloud/HexmoorClient.h"
#include "project/ProjectTree.h"

#include <memory>

class CloudTreeRelease {
public:
    explicit CloudTreeRelease(CHexmoorInteFace* client = nullptr) : m_client(client) {}
    void operator()(HMProjectTree_INFO* tree) const {
        if (m_client) m_client->freeTreeInfo(tree);
    }

private:
    CHexmoorInteFace* m_client;
};

using CloudTree = std::unique_ptr<HMProjectTree_INFO, CloudTreeRelease>;
using LocalTree = std::unique_ptr<HMProjectTree_INFO>;

// Takes over a tree that the client returned (null stays null).
inline CloudTree TakeCloudTree(CHexmoorInteFace& client, HMProjectTree_INFO* tree) {
    return CloudTree(tree, CloudTreeRelease(&client));
}

// A new tree whose root is read from the project's Hexmoor.xml into `document`, which the caller closes. A
// document that does not read has shown its box and leaves the root as far as it was read.
LocalTree ReadProjectRoot(const CString& documentPath, CXmlDocument& document);

