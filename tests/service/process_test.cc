// The real binary: started with one command on a fresh database it serves
// the demo, and a SIGKILL right after an acknowledged write loses nothing.
#include "service_fixture.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace service_test {
namespace {

// A stagebeacon-service child process; killed (SIGKILL) when dropped.
class ServiceProcess {
public:
    explicit ServiceProcess(const std::string& db) {
        int out[2];
        if (::pipe(out) != 0) return;
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(out[1], STDOUT_FILENO);
            ::close(out[0]);
            ::close(out[1]);
            ::execl(STAGEBEACON_SERVICE_BINARY, "stagebeacon-service", "--db", db.c_str(),
                    "--listen", "127.0.0.1:0", "--password-cost", "minimum",
                    static_cast<char*>(nullptr));
            ::_exit(127);
        }
        ::close(out[1]);
        // The first line names the address: "...: listening on http://127.0.0.1:PORT".
        FILE* lines = ::fdopen(out[0], "r");
        char line[256];
        while (lines && std::fgets(line, sizeof line, lines)) {
            const char* mark = std::strstr(line, "http://127.0.0.1:");
            if (mark) {
                port_ = std::atoi(mark + std::strlen("http://127.0.0.1:"));
                break;
            }
        }
        if (lines) std::fclose(lines);
    }
    ~ServiceProcess() { kill(); }

    int port() const { return port_; }
    void kill() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }
    std::string get(const std::string& target) {
        httplib::Client client("127.0.0.1", port_);
        client.set_url_encode(false);
        client.set_read_timeout(10);
        auto result = client.Get(target.c_str());
        return result ? result->body : std::string("(no reply)");
    }

private:
    pid_t pid_ = -1;
    int port_ = 0;
};

TEST(ServiceProcess, FreshDatabaseServesTheDemoAndSurvivesSigkill) {
    TempFolder folder;
    const std::string db = folder.path() + "/fresh.db";
    {
        ServiceProcess first(db);
        ASSERT_GT(first.port(), 0);
        EXPECT_NE(first.get("/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=Boston&STATE=MA")
                      .find("<LAT>42.36"),
                  std::string::npos);
        EXPECT_NE(first.get("/datasources/datasources.php?TODO=GETSITES&CITY=Boston&STATE=MA"
                            "&RADIUS=50&VERSION=2.9")
                      .find("ticket=1>"),
                  std::string::npos);
        ASSERT_EQ(first.get("/sharing/sharing.php?TODO=INITIALIZE_USER&USERNAME=kim&UUID=K1"
                            "&CITY=Boston&STATE=MA&FIRSTNAME=Kim&LASTNAME=Lo"),
                  "<OK>\n");
        ASSERT_EQ(first.get("/iphone/exchange.php?TODO=INITIALIZE_USER&USERNAME=kim&UUID=K1"
                            "&PWD=pw1"),
                  "<OK>\n");
        first.kill(); // no chance to flush anything after the replies
    }
    ServiceProcess second(db);
    ASSERT_GT(second.port(), 0);
    EXPECT_NE(second.get("/sharing/sharing.php?TODO=GETLOCALUSERS&CITY=Boston&STATE=MA")
                  .find("<USERNAME>kim</USERNAME>"),
              std::string::npos);
    EXPECT_EQ(second.get("/iphone/exchange.php?TODO=ADD_ARTISTS&USERNAME=kim&PWD=pw1&ARTISTS=Beck"),
              "<OK>\n");
}

} // namespace
} // namespace service_test
