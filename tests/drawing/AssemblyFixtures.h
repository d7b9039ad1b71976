// A project folder for the cabinet assembly tests, laid out from the DXF fixtures of tests/data/assembly
// (written by ezdxf): a project "Station" with its primary diagram, the secondary drawings its circuits
// name in "Secondary", and device folders with their .prj and drawings.
#pragma once

#include "common/TempFolder.h"
#include "drawing/ExtractionState.h"
#include "platform/host/Documents.h"
#include "platform/host/HostVariables.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>
#include <string>

inline std::string AssemblyFixture(const std::string& name) {
    std::string bytes;
    QxFs::ReadBytes(QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/assembly/" + name), bytes);
    return bytes;
}

// A .prj in the legacy code page with the four cabinet notes.
inline std::string DeviceFileText(const std::string& cabinetNo) {
    const std::string utf8 = "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n柜编号\r\n" + cabinetNo +
                             "\r\n$END_ONE_NOTE\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";
    return utf8;
}

// Host state and extraction state start clean and are left clean.
class AssemblyTest : public testing::Test {
protected:
    void SetUp() override {
        acDocManagerPtr()->reset();
        ResetHostVariables();
        g_bBomCheckFailed = false;
    }
    void TearDown() override {
        QxFreeReferGroups(g_arrReferGroups);
        QxFreeCircuits(g_arrCircuits);
        g_bBomCheckFailed = false;
        acDocManagerPtr()->reset();
        ResetHostVariables();
    }

    void layOutStation() {
        m_folder.writeFile("Station/Station.itm", "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
        m_folder.writeFile("Station/一次系统图.dwg", AssemblyFixture("primary.dxf"));
        m_folder.writeFile("Station/Secondary/S1.dwg", AssemblyFixture("sec_s1.dxf"));
        m_folder.writeFile("Station/Secondary/S2.dwg", AssemblyFixture("sec_s2.dxf"));
        m_folder.writeFile("Station/Secondary/S3.dwg", AssemblyFixture("sec_s3.dxf"));
    }
    void layOutDevice(const std::string& name, const std::string& cabinetNo, bool bothDrawings) {
        m_folder.writeFile("Station/" + name + "/" + name + ".prj", DeviceFileText(cabinetNo));
        m_folder.writeFile("Station/" + name + "/A.dwg", AssemblyFixture("device_a.dxf"));
        if (bothDrawings) m_folder.writeFile("Station/" + name + "/B.dwg", AssemblyFixture("device_b.dxf"));
    }
    CString station() const { return m_folder.logic() + u"Station\\"; }

    TempFolder m_folder;
};
