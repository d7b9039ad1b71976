#include "centre/server/WebText.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

namespace {

const std::unordered_map<std::string_view, const char*>& chinese() {
    static const std::unordered_map<std::string_view, const char*> words{
        {"Hexmoor BOM centre", "Hexmoor BOM 中心"},
        {"Log in", "登录"},
        {"Log out", "退出"},
        {"Enterprise", "企业"},
        {"User", "用户"},
        {"Credential", "密码"},
        {"Give the enterprise, the user and the credential.", "请填写企业、用户和密码。"},
        {"The credential does not match this enterprise and user.", "密码与该企业和用户不符。"},
        {"Too many wrong credentials: try again in %1 s.", "密码错误次数过多：请在 %1 秒后再试。"},
        {"A text holding a NUL character is refused.", "含有 NUL 字符的文字不被接受。"},
        {"Projects", "项目"},
        {"Project", "项目"},
        {"ID", "编号"},
        {"Created", "创建时间"},
        {"Enterprise %1, user %2.", "企业 %1，用户 %2。"},
        {"Your enterprise has no project yet.", "您的企业还没有项目。"},
        {"The project has no sub-projects or devices.", "该项目没有子项目或设备。"},
        {"device", "设备"},
        {"sub-project", "子项目"},
        {"Not found", "未找到"},
        {"Your enterprise has no such project or device.", "您的企业没有这个项目或设备。"},
        {"Not available", "暂不可用"},
        {"The BOM centre's database is not available now; try again later.", "BOM 中心的数据库暂时不可用，请稍后再试。"},
        {"Cabinet", "柜号"},
        {"Name", "名称"},
        {"Model", "型号"},
        {"Size", "尺寸"},
        {"The device has no revision yet.", "该设备还没有修订。"},
        {"Revision", "修订"},
        {"Made by", "提交人"},
        {"Operation", "操作"},
        {"Submitted", "提交时间"},
        {"Rows of revision %1", "修订 %1 的明细"},
        {"This revision has no rows.", "该修订没有明细。"},
        {"System", "系统"},
        {"Count", "数量"},
        {"Code", "编码"},
        {"Remark", "备注"},
        {"primary", "一次"},
        {"secondary", "二次"},
        {"Compare revision %1 with %2", "比较修订 %1 与 %2"},
        {"Compare", "比较"},
        {"Comparison of %1", "%1 的比较"},
        {"Revision %1 against revision %2.", "修订 %1 对比修订 %2。"},
        {"The two revisions hold the same parts.", "两个修订的零件相同。"},
        {"Change", "变化"},
        {"Count in %1", "修订 %1 数量"},
        {"added", "新增"},
        {"removed", "删除"},
        {"count changed", "数量变化"},
    };
    return words;
}

// The weight of one Accept-Language item ("zh-CN;q=0.8" weighs 0.8; no q weighs 1).
double weightOf(const std::string& item) {
    const size_t q = item.find(";q=");
    return q == std::string::npos ? 1.0 : std::strtod(item.c_str() + q + 3, nullptr);
}

} // namespace

WebLanguage LanguageOf(const std::string& acceptLanguage) {
    double chineseWeight = 0, englishWeight = 0;
    size_t start = 0;
    while (start < acceptLanguage.size()) {
        const size_t end = std::min(acceptLanguage.find(',', start), acceptLanguage.size());
        std::string item = acceptLanguage.substr(start, end - start);
        item.erase(0, item.find_first_not_of(' '));
        const std::string tag = item.substr(0, 2);
        if ((tag == "zh" || tag == "ZH") && weightOf(item) > chineseWeight) chineseWeight = weightOf(item);
        if ((tag == "en" || tag == "EN") && weightOf(item) > englishWeight) englishWeight = weightOf(item);
        start = end + 1;
    }
    return chineseWeight > englishWeight ? WebLanguage::Chinese : WebLanguage::English;
}

const char* LanguageTag(WebLanguage language) { return language == WebLanguage::Chinese ? "zh" : "en"; }

std::string Say(WebLanguage language, const char* english, const std::string& first, const std::string& second) {
    std::string_view words = english;
    if (language == WebLanguage::Chinese)
        if (const auto found = chinese().find(english); found != chinese().end()) words = found->second;
    // One pass, so that an argument holding "%2" stays as it is.
    std::string text;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == '%' && i + 1 < words.size() && (words[i + 1] == '1' || words[i + 1] == '2')) {
            text += words[i + 1] == '1' ? first : second;
            ++i;
        } else {
            text += words[i];
        }
    }
    return text;
}
