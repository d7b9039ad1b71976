// Where the plain-text XML tests find their fixtures.
#pragma once

#include "support/FileSystem.h"

#include <string>

inline CString XmlTextFixture(const std::string& name) {
    return QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/xmltext/" + name);
}
