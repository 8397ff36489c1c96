// Opens reports in a real browser and looks at them as a reader does.
//   report_browser CHROMIUM KESTRUNE_DATA SAMPLE_INSTALLATION FOLDER
// Talks to the browser through two pipes, in the DevTools protocol.

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Json = nlohmann::json;

class Browser {
public:
  Browser(const std::string &program, const std::string &profile) {
    std::array<int, 2> to{};
    std::array<int, 2> from{};
    if (pipe2(to.data(), O_CLOEXEC) != 0 || pipe2(from.data(), O_CLOEXEC) != 0)
      throw std::runtime_error("no pipe");
    m_process = fork();
    if (m_process == 0) {
      // The browser reads from 3 and writes to 4; the pipes may have these very numbers.
      const int in = fcntl(to[0], F_DUPFD, 10);
      const int out = fcntl(from[1], F_DUPFD, 10);
      dup2(in, 3);
      dup2(out, 4);
      const int nothing = ::open("/dev/null", O_WRONLY);
      dup2(nothing, STDOUT_FILENO);
      dup2(nothing, STDERR_FILENO);
      const std::string folder = "--user-data-dir=" + profile;
      execlp(program.c_str(), program.c_str(), "--headless", "--no-sandbox", "--disable-gpu", "--remote-debugging-pipe",
             "--disable-background-networking", "--no-first-run", folder.c_str(), static_cast<char *>(nullptr));
      _exit(127);
    }
    close(to[0]);
    close(from[1]);
    m_to = to[1];
    m_from = from[0];
    const Json target = call("Target.createTarget", {{"url", "about:blank"}});
    const Json session = call("Target.attachToTarget", {{"targetId", target["targetId"]}, {"flatten", true}});
    m_session = session["sessionId"];
    for (const char *const domain : {"Page.enable", "Runtime.enable", "Log.enable", "Network.enable"})
      call(domain);
  }
  Browser(const Browser &) = delete;
  Browser &operator=(const Browser &) = delete;
  ~Browser() {
    close(m_to);
    close(m_from);
    waitpid(m_process, nullptr, 0);
  }

  /// Opens a page, and forgets what was said about the last one.
  void open(const std::string &path, int width, bool isDark) {
    call("Emulation.setDeviceMetricsOverride",
         {{"width", width}, {"height", 900}, {"deviceScaleFactor", 1}, {"mobile", false}});
    call("Emulation.setEmulatedMedia",
         {{"features", {{{"name", "prefers-color-scheme"}, {"value", isDark ? "dark" : "light"}}}}});
    m_complaints.clear();
    m_requests.clear();
    m_isLoaded = false;
    call("Page.navigate", {{"url", "file://" + path}});
    while (!m_isLoaded)
      readMessage();
  }

  /// For the pages that are opened after it.
  void allowScripts(bool are) { call("Emulation.setScriptExecutionDisabled", {{"value", !are}}); }

  /// What a piece of script gives, also if it is a promise.
  Json run(const std::string &script) {
    const Json answer =
        call("Runtime.evaluate", {{"expression", script}, {"awaitPromise", true}, {"returnByValue", true}});
    if (answer.contains("exceptionDetails"))
      throw std::runtime_error(script + ": " + answer["exceptionDetails"].dump());
    return answer["result"].value("value", Json());
  }

  /// What the console says, and what was asked for beside the page itself.
  const std::vector<std::string> &complaints() const { return m_complaints; }
  const std::vector<std::string> &requests() const { return m_requests; }

private:
  Json call(const std::string &method, const Json &parameters = Json::object()) {
    Json message = {{"id", ++m_last}, {"method", method}, {"params", parameters}};
    if (!m_session.empty())
      message["sessionId"] = m_session;
    const std::string text = message.dump() + '\0';
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t count = ::write(m_to, text.data() + done, text.size() - done);
      if (count < 0)
        throw std::runtime_error("the browser does not listen");
      done += static_cast<std::size_t>(count);
    }
    while (true) {
      const Json answer = readMessage();
      if (answer.value("id", 0) != m_last)
        continue;
      if (answer.contains("error"))
        throw std::runtime_error(method + ": " + answer["error"].dump());
      return answer["result"];
    }
  }

  Json readMessage() {
    std::size_t end = 0;
    while ((end = m_buffer.find('\0')) == std::string::npos) {
      pollfd ready{m_from, POLLIN, 0};
      std::array<char, 65536> piece{};
      const ssize_t count = poll(&ready, 1, 120000) == 1 ? read(m_from, piece.data(), piece.size()) : 0;
      if (count <= 0)
        throw std::runtime_error("the browser does not answer");
      m_buffer.append(piece.data(), static_cast<std::size_t>(count));
    }
    Json message = Json::parse(m_buffer.substr(0, end));
    m_buffer.erase(0, end + 1);
    const std::string method = message.value("method", "");
    if (method == "Runtime.exceptionThrown" || method == "Log.entryAdded" || method == "Runtime.consoleAPICalled")
      m_complaints.push_back(message["params"].dump());
    else if (method == "Network.requestWillBeSent" && message["params"].value("type", "") != "Document")
      m_requests.push_back(message["params"]["request"]["url"]);
    else if (method == "Page.loadEventFired")
      m_isLoaded = true;
    return message;
  }

  pid_t m_process = 0;
  int m_to = -1;
  int m_from = -1;
  int m_last = 0;
  bool m_isLoaded = false;
  std::string m_session;
  std::string m_buffer;
  std::vector<std::string> m_complaints;
  std::vector<std::string> m_requests;
};

bool failed = false;

void expect(const std::string &what, const Json &is, const Json &expected) {
  if (is == expected)
    return;
  std::cout << what << ": is " << is.dump() << ", expected " << expected.dump() << '\n';
  failed = true;
}

void expectQuiet(const Browser &browser, const std::string &what) {
  expect(what + ": console", browser.complaints(), Json::array());
  expect(what + ": requests", browser.requests(), Json::array());
}

// What a reader does, as script. `visible` are the rows that the browser really shows.
constexpr const char *kHelpers = R"~(
  globalThis.table = document.querySelector("[id$=VorlanModels-t]");
  globalThis.visible = () => [...table.tBodies[0].rows].filter((row) => row.offsetHeight > 0 && !row.matches(".detail"));
  globalThis.names = () => visible().map((row) => row.cells[0].querySelector("a").textContent);
  globalThis.search = (text) => {
    const field = table.closest(".collection").querySelector("input[type=search]");
    field.value = text;
    field.dispatchEvent(new Event("input"));
  };
  globalThis.head = (text) => [...table.tHead.rows[0].cells].find((cell) => cell.textContent === text).querySelector("button");
  globalThis.opened = async (name) => {
    const row = visible().find((row) => row.cells[0].querySelector("a").textContent === name);
    row.cells[0].querySelector("a").click();
    while (!row.record.opened?.querySelector(".detail")) await new Promise((done) => setTimeout(done, 10));
    return row.record.opened;
  };
  0)~";

void lookAtSample(Browser &browser, const std::string &page) {
  for (const int width : {400, 1600}) {
    for (const bool isDark : {false, true}) {
      const std::string what = std::to_string(width) + (isDark ? " dark" : " light");
      browser.open(page, width, isDark);
      browser.run(kHelpers);
      browser.run("opened('Vorlan 2208-XT')");
      expect(what + ": fits the width", browser.run("document.documentElement.scrollWidth <= innerWidth"), true);
      expect(what + ": is dark",
             browser.run("getComputedStyle(document.body).backgroundColor.match(/\\d+/g).every((part) => part < 60)"),
             isDark);
      expectQuiet(browser, what);
    }
  }
  expect("all models", browser.run("search(''), visible().length >= 60"), true);
  expect("search by name", browser.run("search('2208-xt'), names()"), Json::array({"Vorlan 2208-XT"}));
  expect("search by key", browser.run("search('KVO-1802T'), names()"), Json::array({"Vorlan 1802-T"}));
  expect("search for nothing", browser.run("search('no such model'), visible().length"), 0);
  // Numbers are sorted as numbers, whatever their base: 010 is 8.
  browser.run("search(''), head('ModelNum').click()");
  expect("lowest number first", browser.run("names()[0]"), "Vorlan 1802");
  const std::string sorted =
      "(() => { const is = visible().map((row) => Number(row.cells[2].dataset.n ?? row.cells[2].textContent));"
      " return is.every((n, i) => i === 0 || is[i - 1] %s n); })()";
  const auto inOrder = [&](const char *sign) {
    std::string script = sorted;
    return browser.run(script.replace(script.find("%s"), 2, sign));
  };
  expect("rising", inOrder("<="), true);
  browser.run("head('ModelNum').click()");
  expect("falling", inOrder(">="), true);
  // The picture has the addresses of the file, and a text for those who do not see it.
  const std::string picture = "opened('Vorlan 4108').then((row) => [...row.querySelectorAll('svg text.range')]"
                              ".map((text) => text.textContent.replace(/\\s/g, '')).join())";
  expect("picture", browser.run(picture),
         "0xF7C0\xE2\x80\x93"
         "0xF7FF,0xF000\xE2\x80\x93"
         "0xF7FF,0xE000\xE2\x80\x93"
         "0xEFFF,"
         "0x4000\xE2\x80\x93"
         "0x7FFF,0x0000\xE2\x80\x93"
         "0x3FFF");
  expect("its text",
         browser.run(
             "document.querySelector('tr.detail svg[role=img] > desc').textContent.includes('ROM 0x0000 to 0x3FFF')"),
         true);
  expect("keyboard",
         browser.run("(() => { const link = visible()[0].querySelector('a'); link.focus();"
                     " link.dispatchEvent(new KeyboardEvent('keydown', {key: ' ', bubbles: true}));"
                     " return link.getAttribute('aria-expanded'); })()"),
         "true");
  expect("core clock",
         browser.run("[...document.querySelectorAll('.tree strong')].some((rate) => rate.textContent === '15 MHz')"),
         true);
  expect("dropped transceivers",
         browser.run("[...document.querySelectorAll('table.dropped tbody th')].map((head) => head.textContent)"),
         Json::array({"CORDANE 64-f", "Mine loop carrier"}));
  expectQuiet(browser, "at the end");
}

void lookAtBadNames(Browser &browser, const std::string &page) {
  browser.open(page, 1600, false);
  browser.run(kHelpers);
  expect("name", browser.run("names()[0]"), "<script>document.title='x'</script><b>&amp;\"'");
  expect("no tag of it", browser.run("opened(names()[0]).then((row) => row.querySelectorAll('b, script').length)"), 0);
  expect("one-way links",
         browser.run("['one', 'lacks'].map((style) => document.querySelectorAll('.matrix td.' + style).length)"),
         Json::array({1, 1}));
  expect("overlap", browser.run("document.querySelectorAll('tr.detail svg rect.overlap').length"), 1);
  expect("its finding",
         browser.run("[...document.querySelectorAll('tr.detail .findings a')].map((link) => link.textContent)"),
         Json::array({"KD502"}));
  expect("and what that means", browser.run("document.getElementById('KD502') !== null"), true);
  expect("title", browser.run("document.title"), "What the data files say");
  expectQuiet(browser, "bad names");
}

constexpr int kMany = 1000;

/// The sample's chip data with many models more, whose names and keys end with a number from 1000 to 1999.
void writeMany(const std::string &sample, const std::string &path) {
  std::ifstream in(sample);
  std::string text(std::istreambuf_iterator<char>(in), {});
  const std::size_t begin = text.find("<VorlanModel ");
  const std::string end = "</VorlanModel>";
  const std::string model = text.substr(begin, text.find(end, begin) + end.size() - begin);
  std::string more;
  for (int i = 0; i < kMany; ++i) {
    std::string copy = model;
    const std::string number = ' ' + std::to_string(1000 + i);
    copy.insert(copy.find('"', copy.find("Name=\"") + 6), number);
    copy.insert(copy.find("</Key>"), number);
    more += copy;
  }
  std::ofstream(path) << text.insert(text.find("</VorlanModels>"), more);
}

void lookAtMany(Browser &browser, const std::string &page) {
  browser.open(page, 1600, false);
  browser.run(kHelpers);
  const std::string shown = "[visible().length, table.parentElement.nextElementSibling.textContent]";
  const auto rows = [](int count, const char *button) { return Json::array({count, button}); };
  expect("some are shown", browser.run(shown), rows(200, "Show 200 more (200 of 1,050 are shown)"));
  expect("and some more", browser.run("document.querySelector('.more').click(), " + shown),
         rows(400, "Show 200 more (400 of 1,050 are shown)"));
  expect("which the reader goes on with", browser.run("document.activeElement.closest('tr') === visible()[200]"), true);
  // Those that are not shown are found, opened and sorted as the others.
  expect("the last is found", browser.run("search(' 1999'), names()"), Json::array({"Vorlan 1802 1999"}));
  expect("and opens",
         browser.run("opened('Vorlan 1802 1999').then((row) => row.querySelectorAll('svg rect').length > 3)"), true);
  expect("a text with an entity", browser.run("search('&'), visible().length"), 0);
  expect("sorted by key", browser.run("search('vorlan'), head('Key').click(), head('Key').click(), names()[0]"),
         "Vorlan 9316-R24");
  expect("by number", browser.run("search(' 1'), head('ModelNum').click(), names()[1]"), "Vorlan 1802 1000");
  browser.run("search('no such'), location.hash = table.id.slice(0, -1) + '1049'");
  expect("a link to the last, which the search hides, shows and opens it",
         browser.run("new Promise((done) => setTimeout(done, 200)).then(() => [document.activeElement.textContent, "
                     "visible().at(-1) === document.activeElement.closest('tr.open')])"),
         Json::array({"Vorlan 1802 1999", true}));
  expectQuiet(browser, "many");

  browser.allowScripts(false);
  browser.open(page, 1600, false);
  expect("without scripts",
         browser.run("[...document.querySelectorAll('table[id*=VorlanModels-t]')].reduce((sum, table) => sum + "
                     "[...table.tBodies[0].rows].filter((row) => row.offsetHeight > 0).length, 0)"),
         1050);
  browser.allowScripts(true);
}

void lookAtChanges(Browser &browser, const std::string &page) {
  browser.open(page, 400, false);
  browser.run(kHelpers);
  const auto texts = [&](const char *selector) {
    return browser.run("[...document.querySelectorAll('" + std::string(selector) + "')].map((at) => at.textContent)");
  };
  expect("marked", texts("tr[id] .badge.change"), Json::array({"changed", "new"}));
  expect("gone", texts(".collection > .names del"), Json::array({"Vorlan 1802-T (KVO-1802T-D24)"}));
  browser.run("opened('Vorlan 1802')");
  expect("old and new text", texts("tr.detail table.changes tr"), Json::array({"RAMend0xF1FF \xE2\x86\x92 0xF8FF"}));
  expect("at the member", texts("tr.detail dl .changed ins"), Json::array({"0xF8FF"}));
  expect("fits the width", browser.run("document.documentElement.scrollWidth <= innerWidth"), true);
  expectQuiet(browser, "changes");
}

void make(const std::string &command) {
  if (std::system(command.c_str()) != 0)
    throw std::runtime_error(command + " failed");
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 5)
    return 2;
  if (std::string(argv[1]).ends_with("NOTFOUND")) {
    std::cout << "skipped: no chromium is installed\n";
    return 77;
  }
  const std::string tool = argv[2];
  const std::string folder = std::filesystem::absolute(argv[4]);
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  try {
    make(tool + " report --as-installed " + argv[3] + "/Types -o " + folder + "/sample.html");
    make("sed '0,/Name=\"Vorlan "
         "1802\"/s//Name=\"\\&lt;script>document.title=\\&apos;x\\&apos;\\&lt;\\/"
         "script>\\&lt;b>\\&amp;amp;\\&quot;\\&apos;\"/; "
         "s/<LinkCompatibleList>9</<LinkCompatibleList></; 0,/<RAMend>0xF1FF/s//<RAMend>0xF8FF/' " +
         std::string(argv[3]) + "/Types/Vorlan.xml > " + folder + "/bad.xml");
    make(tool + " report " + folder + "/bad.xml -o " + folder + "/bad.html");
    // One text differs, and one model has another name and key.
    make("sed '0,/<RAMend>0xF1FF/s//<RAMend>0xF8FF/; s/Vorlan 1802-T/Elsewhere/; s/KVO-1802T/KVO-NEW/' " +
         std::string(argv[3]) + "/Types/Vorlan.xml > " + folder + "/Vorlan.xml");
    make(tool + " report " + folder + "/Vorlan.xml --against " + argv[3] + "/Types -o " + folder + "/changes.html");
    Browser browser(argv[1], folder + "/profile");
    lookAtSample(browser, folder + "/sample.html");
    lookAtBadNames(browser, folder + "/bad.html");
    lookAtChanges(browser, folder + "/changes.html");
    writeMany(std::string(argv[3]) + "/Types/Vorlan.xml", folder + "/many.xml");
    make(tool + " report " + folder + "/many.xml -o " + folder + "/many.html");
    lookAtMany(browser, folder + "/many.html");
  } catch (const std::exception &error) {
    std::cout << error.what() << '\n';
    failed = true;
  }
  return failed ? 1 : 0;
}
