// The template drawing that new devices get: a drawing that the module's reader and an independent DXF
// reader both take, with a title block whose name cell holds 图纸; laid out once, never over a person's own.
#include "common/ShellRun.h"
#include "common/TempFolder.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/title/TitleBlock.h"
#include "project/folders/TemplateDrawing.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>

#include <string>

TEST(TemplateDrawing, TheModulesReaderAndAnIndependentReaderTakeItAndFindItsTitleBlock) {
    TempFolder install;
    ASSERT_TRUE(LayOutTemplateDrawing(install.logic()));
    QxDwgDatabase database(install.logic() + u"Support\\TEMPLATE\\图纸.DWG", 0);
    ASSERT_TRUE(database);
    CString number = u"x";
    CString name;
    EXPECT_TRUE(QxGetDwgTitle(database.get(), number, name));
    EXPECT_EQ(name, CString(HM_TEMPLATE_DRAWING_NAME));
    EXPECT_EQ(number, u"");  // left for the person to fill in

    const std::string script =
        "import sys, ezdxf\n"
        "from ezdxf.lldxf.encoding import decode_dxf_unicode as text\n"
        "doc = ezdxf.readfile(sys.argv[1])\n"
        "auditor = doc.audit()\n"
        "ref = doc.modelspace().query('INSERT')[0]\n"
        "apps = sorted(a for a in ('HORSIZE_OF_DRAWING', 'VERSIZE_OF_DRAWING', 'HORNUM_OF_TABLE', 'VERNUM_OF_TABLE',"
        " 'HORBEGIN_OF_TABLE') if ref.has_xdata(a))\n"
        "cells = [text(v) for c, v in ref.get_extension_dict()['CORVANE_TITLE'].tags]\n"
        "texts = [text(t.dxf.text) for t in doc.modelspace().query('TEXT')]\n"
        "print(doc.dxfversion, len(auditor.errors), len(apps), cells[0], cells[2], cells[-1], texts)\n";
    const std::string path = install.native() + "/Support/TEMPLATE/图纸.DWG";
    const ShellRun run = RunShellCommand("/usr/bin/python3 -c \"" + script + "\" '" + path + "'");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "AC1015 0 5 $BEGINETITLE 图号|20|40|90|30|0|0| $ENDTITLE ['图纸']\n");
}

// qxcad lays it out in a new install folder; a template that is there is kept.
TEST(TemplateDrawing, QxcadLaysItOutInANewInstallFolderAndATemplateThatIsThereIsKept) {
    TempFolder home;
    const std::string install = home.native() + "/corvane";
    const std::string qxcad = std::string(QX_BINARY_DIR) + "/bin/qxcad";
    const std::string out = RunShellCommand(qxcad + " --install-dir '" + install + "' HELP </dev/null 2>&1").out;
    EXPECT_EQ(home.readFile("corvane/Support/TEMPLATE/图纸.DWG"), TemplateDrawingDxf()) << out;

    home.writeFile("corvane/Support/TEMPLATE/图纸.DWG", "the office's own template");
    EXPECT_TRUE(LayOutTemplateDrawing(home.logic() + u"corvane\\"));
    EXPECT_EQ(home.readFile("corvane/Support/TEMPLATE/图纸.DWG"), "the office's own template");
    home.writeFile("blocked", "a file where the install folder would be");
    EXPECT_FALSE(LayOutTemplateDrawing(home.logic() + u"blocked\\"));
    EXPECT_FALSE(LayOutTemplateDrawing(CString()));
}
