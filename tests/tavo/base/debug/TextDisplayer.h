#pragma once

#include <QLabel>
#include <QPointer>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

// An event with a text to show.
class TextEvent : public EventDisplayerEvent
{
public:
    explicit TextEvent(std::string eventText)
        : text(std::move(eventText))
    {}

    std::string text;
};

// A displayer for tests: its widget is a label, each event writes the name and the text into it. The text "throw"
// throws.
class TextDisplayer : public EventDisplayer
{
public:
    // Whether making the next widgets throws.
    static inline bool s_Refuses = false;
    // How many widgets were made, and how many displayers live.
    static inline int s_NumWidgets = 0;
    static inline int s_NumDisplayers = 0;

    TextDisplayer() { ++s_NumDisplayers; }
    ~TextDisplayer() override { --s_NumDisplayers; }

    const MetaClass* getInstanceClass() const override { return getClass(); }

    void displayEvent(const EventDisplayerEvent* event, const char* name) override
    {
        const auto* textEvent = dynamic_cast<const TextEvent*>(event);
        if (!textEvent || !m_Label)
            return;
        if (textEvent->text == "throw")
            throw PException("TextDisplayer - asked to throw");
        m_Label->setText(QString::fromStdString(std::string(name) + ": " + textEvent->text));
    }

    static const MetaClass* getClass()
    {
        return createClassRecord<TextDisplayer>(s_MetaClass, "TextDisplayer", newInstance);
    }
    static void init(const MetaClass* parent)
    {
        getClass();
        initClassRecord(s_MetaClass, parent, 1000);
    }

protected:
    QWidget* createSpecialWidget(QWidget* parent) override
    {
        if (s_Refuses)
            throw PException("TextDisplayer - no widget today");
        ++s_NumWidgets;
        m_Label = new QLabel(parent);
        return m_Label;
    }

private:
    static Object* newInstance() { return new TextDisplayer; }

    static inline MetaClass* s_MetaClass = nullptr;

    QPointer<QLabel> m_Label;
};

} // namespace tavo
