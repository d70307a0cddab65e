#include <list>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/works.h"
#include "vireo/context/GLObject.h"

#include <GL/gl.h>

namespace vireo_bench {

namespace {

// Makes many objects, and then destroys them in the order of their making.
template <typename Object, typename Registry>
class Lives : public Contestant
{
public:
    void run() override
    {
        for (std::unique_ptr<Object>& object : m_Objects)
            object = std::make_unique<Object>(m_Registry);
        for (std::unique_ptr<Object>& object : m_Objects)
            object.reset();
    }

protected:
    Lives(Registry* registry, std::size_t numObjects)
        : m_Registry(registry)
        , m_Objects(numObjects)
    {}

private:
    Registry* m_Registry;
    std::vector<std::unique_ptr<Object>> m_Objects;
};

class RegisteredLives : public Lives<tavo::GLObject, tavo::GLContext>
{
public:
    explicit RegisteredLives(std::size_t numObjects)
        : Lives(&View::context(), numObjects)
    {}
};

// An object that knows its place in a list.
class Listed
{
public:
    explicit Listed(std::list<Listed*>* list)
        : m_List(list)
        , m_Place(list->insert(list->end(), this))
    {}
    virtual ~Listed() { m_List->erase(m_Place); }
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;

private:
    std::list<Listed*>* m_List;
    std::list<Listed*>::iterator m_Place;
};

class ListedLives : public Lives<Listed, std::list<Listed*>>
{
public:
    explicit ListedLives(std::size_t numObjects)
        : Lives(&m_List, numObjects)
    {}

private:
    std::list<Listed*> m_List;
};

// Deletes names of textures.
class Deletion : public Contestant
{
public:
    explicit Deletion(std::size_t numNames)
        : m_Names(numNames)
    {}
    void prepare() override
    {
        m_Context = &View::context();
        glGenTextures(numNames(), m_Names.data());
        for (const GLuint name : m_Names)
            glBindTexture(GL_TEXTURE_2D, name); // which makes it a texture
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    Bytes result() override
    {
        Bytes areTextures;
        for (const GLuint name : m_Names)
            areTextures.push_back(glIsTexture(name));
        return areTextures;
    }

protected:
    GLsizei numNames() const { return static_cast<GLsizei>(m_Names.size()); }

    tavo::GLContext* m_Context = nullptr;
    std::vector<GLuint> m_Names;
};

class QueuedDeletion : public Deletion
{
public:
    using Deletion::Deletion;
    void prepare() override
    {
        Deletion::prepare();
        m_Context->deactivate();
        for (const GLuint name : m_Names)
            m_Context->deleteTexture(name);
        m_Context->getQGLWidget()->makeCurrent();
    }
    void run() override
    {
        m_Context->activate();
        glFinish();
    }
};

class BareDeletion : public Deletion
{
public:
    using Deletion::Deletion;
    void run() override
    {
        glDeleteTextures(numNames(), m_Names.data());
        glFinish();
    }
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> with(std::size_t number)
{
    return [number] { return std::make_unique<Kind>(number); };
}

} // namespace

Comparison createAndDestroyObjects(std::size_t number)
{
    return {"create and destroy " + withCommas(number) + " registered objects",
        {{"vireo", with<RegisteredLives>(number)}, {"floor", with<ListedLives>(number), 1.3}}};
}

Comparison deleteQueuedNames(std::size_t number)
{
    return {"delete " + withCommas(number) + " queued names",
        {{"vireo", with<QueuedDeletion>(number)}, {"floor", with<BareDeletion>(number), 1.05}}};
}

void addObjectWorks()
{
    add(createAndDestroyObjects(100'000));
    add(deleteQueuedNames(100'000));
}

} // namespace vireo_bench
