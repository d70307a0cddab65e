#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vireo_view {

// A test with files of its own.
class FilesTest : public testing::Test
{
protected:
    std::filesystem::path directory() const { return m_Directory.path().toStdString(); }

    std::filesystem::path write(const std::string& name, std::string_view contents) const
    {
        const std::filesystem::path file = directory() / name;
        std::ofstream(file, std::ios::binary) << contents;
        return file;
    }

    // The file takes up room for its contents only, where the file system can do so. std::filesystem::resize_file of
    // MinGW-w64 wants all of its size to be free nevertheless.
    std::filesystem::path writeBeforeHole(const std::string& name, std::string_view contents, qint64 size) const
    {
        const std::filesystem::path file = write(name, contents);
        if (QFile stretched(QString::fromStdU16String(file.u16string())); !stretched.resize(size))
            throw std::runtime_error(file.string() + ": " + stretched.errorString().toStdString());
        return file;
    }

    // What was thrown, without the directory's name; empty if nothing was.
    template <typename Error, typename Code>
    std::string messageOf(Code&& code) const
    {
        try {
            code();
        } catch (const Error& error) {
            const std::string text = error.what();
            const std::string prefix = (directory() / "").string();
            return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
        }
        return {};
    }

    // Selects a locale with decimal commas for the rest of the test, and makes one if there is none. False if it
    // cannot.
    bool useDecimalComma() const
    {
        const char* const locale = "de_DE.UTF-8";
        const char* const localeOnWindows = "German_Germany";
        if (std::setlocale(LC_NUMERIC, locale) || std::setlocale(LC_NUMERIC, localeOnWindows))
            return true;
        const std::string command =
            "localedef -i de_DE -f UTF-8 " + (directory() / locale).string() + " >/dev/null 2>&1";
        return std::system(command.c_str()) == 0 && qputenv("LOCPATH", m_Directory.path().toUtf8()) &&
               std::setlocale(LC_NUMERIC, locale);
    }

    void TearDown() override { std::setlocale(LC_NUMERIC, "C"); }

private:
    QTemporaryDir m_Directory;
};

} // namespace vireo_view
