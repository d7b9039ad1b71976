// The administrator's account command. A credential is asked twice without echo on a terminal, or read as
// one line of standard input, so that it never stands on a command line.
#include "apps/hexmoord/AccountCommand.h"

#include "centre/operations/CentreAccounts.h"
#include "centre/operations/CentreError.h"
#include "centre/server/StorePool.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace {

struct AccountArguments {
    std::string database;
    std::string enterprise;
    std::string user;
};

std::optional<std::string> readLine(std::istream& in) {
    std::string line;
    if (!std::getline(in, line)) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

std::optional<std::string> askHidden(const char* prompt) {
    std::cerr << prompt << std::flush;
    termios saved{};
    ::tcgetattr(STDIN_FILENO, &saved);
    termios quiet = saved;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    auto line = readLine(std::cin);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &saved);
    std::cerr << "\n";
    return line;
}

// The new credential, or nullopt (with the reason told) when none was given.
std::optional<CString> newCredential() {
    if (!::isatty(STDIN_FILENO)) {
        const auto line = readLine(std::cin);
        if (!line || line->empty()) {
            std::cerr << "hexmoord: no credential on standard input\n";
            return std::nullopt;
        }
        return CString::FromUtf8(*line);
    }
    const auto first = askHidden("Credential: ");
    const auto second = first ? askHidden("Credential again: ") : std::nullopt;
    if (!first || !second || first->empty() || *first != *second) {
        std::cerr << "hexmoord: the two credentials are empty or differ; nothing was changed\n";
        return std::nullopt;
    }
    return CString::FromUtf8(*first);
}

CString text(const std::string& utf8) { return CString::FromUtf8(utf8); }

int run(const std::string& action, const AccountArguments& arguments) {
    try {
        const std::unique_ptr<ICentreStore> store = CentreStoreOpener(arguments.database)();
        CCentreAccounts accounts(*store);
        const CString enterprise = text(arguments.enterprise);
        const CString user = text(arguments.user);
        if (action == "list") {
            for (const CentreAccount& account : accounts.List())
                std::cout << account.enterprise.ToUtf8() << "/" << account.user.ToUtf8() << "\t" << account.created.ToUtf8()
                          << "\t" << (account.disabled ? "disabled" : "enabled") << "\n";
            return 0;
        }
        if (action == "disable") {
            accounts.Disable(enterprise, user);
            std::cout << "hexmoord: " << arguments.enterprise << "/" << arguments.user << " is disabled; its sessions ended\n";
            return 0;
        }
        // Names are checked before a credential is asked for.
        RequireAccountText(enterprise, u"enterprise");
        RequireAccountText(user, u"user");
        const auto credential = newCredential();
        if (!credential) return 1;
        if (action == "add") accounts.Add(enterprise, user, *credential);
        else accounts.SetCredential(enterprise, user, *credential);
        std::cout << "hexmoord: " << arguments.enterprise << "/" << arguments.user
                  << (action == "add" ? " is added\n" : " has a new credential; its sessions ended\n");
        return 0;
    } catch (const CCentreError& error) {
        std::cerr << "hexmoord: " << error.message().ToUtf8() << "\n";
        return 1;
    }
}

} // namespace

std::function<int()> AddAccountCommand(CLI::App& app) {
    auto arguments = std::make_shared<AccountArguments>();
    auto chosen = std::make_shared<std::string>();
    CLI::App* account = app.add_subcommand("account", "keep the team's accounts (add, disable, password, list)");
    account->require_subcommand(1);
    const auto addAction = [&](const char* name, const char* description, bool named) {
        CLI::App* command = account->add_subcommand(name, description);
        command->add_option("--db", arguments->database, "the centre's database, as hexmoord --db names it")->required();
        if (named) {
            command->add_option("enterprise", arguments->enterprise, "the account's enterprise")->required();
            command->add_option("user", arguments->user, "the account's user")->required();
        }
        command->callback([chosen, name] { *chosen = name; });
    };
    addAction("add", "make an account; its credential is asked without echo, or read from standard input", true);
    addAction("disable", "refuse the account's logins from now on and end its sessions", true);
    addAction("password", "give the account a new credential (asked, or read from standard input) and end its sessions", true);
    addAction("list", "list every account with its state", false);
    return [arguments, chosen]() { return chosen->empty() ? -1 : run(*chosen, *arguments); };
}
