#include <QDir>
#include <QImage>

#include "benchmarks/peers/pictures.h"
#include "benchmarks/support/Program.h"

namespace vireo_bench {

namespace {

// Leaves out what nobody but vireo does.
void addPictures(Comparison pictures)
{
    if (pictures.entries.size() > 1)
        add(std::move(pictures));
}

// Saves what each of them shows, so that somebody can look at it.
void savePictures(const QDir& directory, Subject subject, const QString& name)
{
    for (const Entry& entry : firstPicture("", subject).entries) {
        const std::unique_ptr<Contestant> picture = entry.make();
        picture->run();
        const Bytes pixels = picture->result();
        const QString who = QString::fromStdString(entry.name).toLower().remove('\'').replace(' ', '-');
        QImage(pixels.data(), Scene::SIZE, Scene::SIZE, QImage::Format_RGBX8888)
            .mirrored()
            .save(directory.filePath(name + "-" + who + ".png"));
        picture->cleanUp();
    }
}

} // namespace

} // namespace vireo_bench

// With --pictures DIRECTORY, nothing is measured, and the pictures are saved.
int main(int argc, char** argv)
{
    using namespace vireo_bench;
    Program program(argc, argv);
    if (argc == 3 && argv[1] == std::string("--pictures")) {
        for (const auto& [subject, name] : {std::pair(Subject::HEAD, "head"), {Subject::VOLUME, "volume"},
                 {Subject::POINTS, "points"}, {Subject::CLOUD, "cloud"}, {Subject::SCAN, "scan"},
                 {Subject::IMAGE, "image"}, {Subject::CURVES, "curves"}})
            savePictures(QDir(argv[2]), subject, name);
        return 0;
    }
    addPictures(firstPicture("first picture of the head", Subject::HEAD));
    addPictures(changedPicture("picture of the head after a changed transfer function", Subject::HEAD));
    addPictures(nextPicture("next picture of the head", Subject::HEAD));
    addPictures(firstPicture("first picture of the head, as a scene", Subject::VOLUME));
    addPictures(changedPicture("picture of the head after a changed transfer function, as a scene", Subject::VOLUME));
    addPictures(nextPicture("next picture of the head, as a scene", Subject::VOLUME));
    addPictures(firstPicture("first picture of 1,000,000 points", Subject::POINTS));
    addPictures(nextPicture("next picture of 1,000,000 points", Subject::POINTS));
    addPictures(nextPicture("next picture of 1,000,000 points, as a scene", Subject::CLOUD));
    addPictures(firstPicture("first picture of a 4096 x 4096 image, red and blue exchanged", Subject::IMAGE));
    addPictures(firstPicture("picture of 10 curves of 100,000 samples, sent to painted", Subject::CURVES));
    return program.run();
}
