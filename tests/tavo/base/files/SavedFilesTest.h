#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tavo {

// A test that saves files into a folder of its own.
class SavedFilesTest : public testing::Test
{
protected:
    QString path(const QString& name) const { return m_Folder.filePath(name); }

    void write(const QString& name, const QByteArray& contents) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(contents), contents.size());
    }

    QByteArray contentsOf(const QString& name) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    // What lies in the folder, in the order of the alphabet: no remains of what was not saved.
    std::vector<std::string> names(const QString& folder = {}) const
    {
        const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;
        std::vector<std::string> result;
        for (const QString& name : QDir(path(folder)).entryList(all, QDir::Name))
            result.push_back(name.toStdString());
        return result;
    }

private:
    QTemporaryDir m_Folder;
};

} // namespace tavo
