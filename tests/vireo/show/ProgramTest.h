#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <string>

#include "tests/support/Program.h"

namespace tavo {

// Runs programs that use the front door, in a folder of the test's own, with the display of the test.
class ProgramTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_Folder.isValid());
        m_Environment.insert("XDG_RUNTIME_DIR", m_Folder.path());
        m_Environment.insert("XDG_CONFIG_HOME", path("config")); // whatever is remembered on this machine
        m_Environment.remove("VIREO_SHOW");
        m_Environment.remove("QT_QPA_PLATFORM");
        // Qt keeps something of every thread that it has not made, and of plugins that are gone. Of programs that end
        // in all manner of ways, that cannot be told from leaks of ours: those are looked for in tests of one process.
        m_Environment.insert("ASAN_OPTIONS", m_Environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
    }

    void set(const char* name, const QString& value) { m_Environment.insert(name, value); }
    void unset(const char* name) { m_Environment.remove(name); }
    QString path(const char* name) const { return m_Folder.filePath(name); }
    bool exists(const char* name) const { return QFileInfo::exists(path(name)); }

    Outcome run(const char* program, const char* executable = VIREO_SHOW_PROGRAM)
    {
        return runProgram(executable, {}, m_Folder.path(), environmentOf(program));
    }

    // Runs a program that is to end well, with nothing to say about it.
    std::string outputOf(const char* program, const char* executable = VIREO_SHOW_PROGRAM)
    {
        const Outcome outcome = run(program, executable);
        EXPECT_EQ(outcome.exitStatus, 0) << program;
        EXPECT_EQ(outcome.errors, "") << program;
        return outcome.output;
    }

    QProcessEnvironment environmentOf(const char* program)
    {
        set("VIREO_TEST_PROGRAM", program);
        return m_Environment;
    }

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QCoreApplication m_Application{m_NumArguments, m_Arguments};
    QTemporaryDir m_Folder;
    QProcessEnvironment m_Environment = QProcessEnvironment::systemEnvironment();
};

} // namespace tavo
