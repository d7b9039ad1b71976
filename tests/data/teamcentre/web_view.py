#!/usr/bin/python3
"""Drives hexmoord's web view in headless Chromium, as a project manager would: logs in, opens the
projects, a project's tree, a device's rows by revision and the comparison of two revisions, checks what
each page shows, and keeps a screenshot of the comparison page.

Usage: web_view.py BASE_URL ENTERPRISE USER CREDENTIAL PROJECT DEVICE SCREENSHOT
Exit status 0 when every check held; the first failed check is printed on standard error.
"""
import sys
import urllib.error
import urllib.request

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support import expected_conditions
from selenium.webdriver.support.ui import WebDriverWait


class NoRedirect(urllib.request.HTTPRedirectHandler):
    def redirect_request(self, *arguments):
        return None


def check(condition, what):
    if not condition:
        raise AssertionError(what)


def main():
    base, enterprise, user, credential, project, device, screenshot = sys.argv[1:8]
    options = Options()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     "--window-size=1280,900", "--no-proxy-server"):
        options.add_argument(argument)
    driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
    driver.set_page_load_timeout(30)
    # A click that submits a form returns before the next page is there: look-ups wait for it.
    driver.implicitly_wait(20)
    try:
        # Without a session every page leads to the login.
        driver.get(base + "/projects")
        check(driver.find_elements(By.ID, "credential"), "an unknown visitor is not sent to the login")

        driver.find_element(By.ID, "enterprise").send_keys(enterprise)
        driver.find_element(By.ID, "user").send_keys(user)
        driver.find_element(By.ID, "credential").send_keys("wrong" + credential)
        driver.find_element(By.ID, "login").click()
        check("does not match" in driver.find_element(By.ID, "error").text, "a wrong credential is not refused")
        # The failed login kept what was typed, but not the credential.
        check(driver.find_element(By.ID, "enterprise").get_attribute("value") == enterprise, "the enterprise was not kept")
        check(driver.find_element(By.ID, "user").get_attribute("value") == user, "the user was not kept")
        check(driver.find_element(By.ID, "credential").get_attribute("value") == "", "the credential was kept")

        driver.find_element(By.ID, "credential").send_keys(credential)
        driver.find_element(By.ID, "login").click()
        projects = driver.find_element(By.ID, "projects").text
        check("华东变电站" in projects, "the project list lacks the project: " + projects)
        check("竞争对手" not in projects, "another enterprise's project is listed")

        driver.find_element(By.LINK_TEXT, "华东变电站").click()
        tree = driver.find_element(By.ID, "tree").text
        check("出线" in tree and "AH1" in tree and "AH2" in tree, "the tree lacks nodes: " + tree)

        driver.find_element(By.LINK_TEXT, "AH1").click()
        cabinet = driver.find_element(By.ID, "cabinet").text
        check(all(word in cabinet for word in ("AH1", "进线柜", "KYN28A-12", "800×1500×2300")),
              "the device page lacks the cabinet's number, name, model or size: " + cabinet)
        revisions = driver.find_element(By.ID, "revisions").find_elements(By.TAG_NAME, "tr")
        check(len(revisions) == 1 + 3, "three revisions are not listed: %d rows" % (len(revisions) - 1))
        check("bob" in revisions[3].text, "the newest revision does not name bob: " + revisions[3].text)
        check("Rows of revision 3" in driver.find_element(By.ID, "shown").text, "the current revision is not shown")
        rows = driver.find_element(By.CLASS_NAME, "rows").text
        check("综保装置" in rows and "电压表" in rows, "revision 3's rows are wrong: " + rows)

        driver.find_element(By.LINK_TEXT, "1").click()
        WebDriverWait(driver, 20).until(
            expected_conditions.text_to_be_present_in_element((By.ID, "shown"), "Rows of revision 1"))
        rows = driver.find_element(By.CLASS_NAME, "rows").text
        check("Rows of revision 1" in driver.find_element(By.ID, "shown").text, "revision 1 is not shown")
        check("电压表" not in rows and "断路器" in rows, "revision 1's rows are wrong: " + rows)

        driver.find_element(By.CSS_SELECTOR, "#from option[value='1']").click()
        driver.find_element(By.CSS_SELECTOR, "#to option[value='3']").click()
        driver.find_element(By.ID, "compare").click()
        table = driver.find_element(By.ID, "differences")
        added = [r.text for r in table.find_elements(By.CSS_SELECTOR, "tr.added")]
        removed = [r.text for r in table.find_elements(By.CSS_SELECTOR, "tr.removed")]
        changed = [r.text for r in table.find_elements(By.CSS_SELECTOR, "tr.count")]
        check(len(added) == 3 and any("电压表" in r for r in added), "added rows: %s" % added)
        check(len(removed) == 1 and "电流互感器" in removed[0], "removed rows: %s" % removed)
        check(len(changed) == 1 and "断路器" in changed[0] and "1" in changed[0] and "2" in changed[0],
              "changed rows: %s" % changed)
        driver.save_screenshot(screenshot)
        # In a 420 px window the comparison needs no sideways scrolling of the page.
        driver.set_window_size(420, 900)
        width = driver.execute_script("return [document.documentElement.scrollWidth, window.innerWidth]")
        check(width[0] <= width[1], "the comparison is %d px wide in a %d px window" % (width[0], width[1]))
        driver.set_window_size(1280, 900)

        # Another enterprise's IDs lead nowhere, even when named outright.
        driver.get(base + "/projects/%s/devices/%s?revision=1" % (project, str(int(device) + 1000)))
        check("Not found" in driver.title, "an unknown device is shown")

        # Markup in every field the centre keeps is shown as text: no element comes of it.
        driver.get(base + "/projects/%s/devices/%s" % (project, device))
        check(not driver.find_elements(By.CSS_SELECTOR, "main b, main script, main img"), "markup of a field became an element")
        check("<b>bold</b>" in driver.find_element(By.TAG_NAME, "main").text, "markup of a field is not shown as text")

        # The words follow the browser's language; the pages carry an icon.
        chinese = urllib.request.urlopen(urllib.request.Request(base + "/", headers={"Accept-Language": "zh-CN,zh;q=0.9,en;q=0.8"}))
        page = chinese.read().decode("utf-8")
        check('lang="zh"' in page and "登录" in page and "企业" in page, "a Chinese browser is not answered in Chinese")
        english = urllib.request.urlopen(urllib.request.Request(base + "/", headers={"Accept-Language": "en-GB,zh;q=0.5"}))
        check("Enterprise" in english.read().decode("utf-8"), "an English browser is not answered in English")
        check(driver.find_elements(By.CSS_SELECTOR, "link[rel='icon']"), "the page names no icon")
        icon = urllib.request.urlopen(base + "/favicon.ico")
        check(icon.headers["Content-Type"] == "image/svg+xml" and b"<svg" in icon.read(), "no icon is served")

        # Logging out ends the session on the server: the token the browser held opens nothing afterwards.
        token = driver.get_cookie("hexmoor_web")["value"]
        driver.find_element(By.ID, "logout").click()
        WebDriverWait(driver, 20).until(expected_conditions.presence_of_element_located((By.ID, "credential")))
        driver.get(base + "/projects")
        check(driver.find_elements(By.ID, "credential"), "the session outlived the logout")
        request = urllib.request.Request(base + "/projects", headers={"Cookie": "hexmoor_web=" + token})
        opener = urllib.request.build_opener(NoRedirect)
        try:
            answer = opener.open(request).status
        except urllib.error.HTTPError as refused:
            answer = refused.code
        check(answer == 303, "the logged-out token still opens the projects page (status %d)" % answer)
    finally:
        driver.quit()


if __name__ == "__main__":
    try:
        main()
    except AssertionError as failed:
        print("web view check failed: %s" % failed, file=sys.stderr)
        sys.exit(1)
