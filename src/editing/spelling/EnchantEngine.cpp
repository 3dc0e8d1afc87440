#include "editing/spelling/EnchantEngine.h"

#include <QLibrary>
#include <algorithm>
#include <enchant.h>

namespace quillory {

namespace {

/// The functions of the library, by their own names.
struct Enchant
{
    decltype(&enchant_broker_init) brokerInit = nullptr;
    decltype(&enchant_broker_free) brokerFree = nullptr;
    decltype(&enchant_broker_list_dicts) brokerListDicts = nullptr;
    decltype(&enchant_broker_request_dict) brokerRequestDict = nullptr;
    decltype(&enchant_broker_free_dict) brokerFreeDict = nullptr;
    decltype(&enchant_dict_check) dictCheck = nullptr;
    decltype(&enchant_dict_suggest) dictSuggest = nullptr;
    decltype(&enchant_dict_free_string_list) dictFreeStringList = nullptr;
    decltype(&enchant_dict_add) dictAdd = nullptr;

    /// False when the library is not there.
    bool load()
    {
        QLibrary library(QStringLiteral("enchant-2"), 2);
        bool complete = library.load();
        const auto find = [&](auto& function, const char* name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                complete ? library.resolve(name) : nullptr);
            complete = complete && function;
        };
        find(brokerInit, "enchant_broker_init");
        find(brokerFree, "enchant_broker_free");
        find(brokerListDicts, "enchant_broker_list_dicts");
        find(brokerRequestDict, "enchant_broker_request_dict");
        find(brokerFreeDict, "enchant_broker_free_dict");
        find(dictCheck, "enchant_dict_check");
        find(dictSuggest, "enchant_dict_suggest");
        find(dictFreeStringList, "enchant_dict_free_string_list");
        find(dictAdd, "enchant_dict_add");
        return complete;
    }
};

class EnchantEngine : public SpellingEngine
{
public:
    EnchantEngine()
    {
        if (m_enchant.load())
            m_broker = m_enchant.brokerInit();
    }

    ~EnchantEngine() override
    {
        freeDictionary();
        if (m_broker)
            m_enchant.brokerFree(m_broker);
    }

    EnchantEngine(const EnchantEngine&) = delete;
    EnchantEngine& operator=(const EnchantEngine&) = delete;

    QStringList languages() override
    {
        QStringList tags;
        if (!m_broker)
            return tags;
        const auto note = [](const char* tag, const char*, const char*, const char*, void* list) {
            static_cast<QStringList*>(list)->append(QString::fromUtf8(tag));
        };
        m_enchant.brokerListDicts(m_broker, note, &tags);
        tags.removeDuplicates();
        std::sort(tags.begin(), tags.end());
        return tags;
    }

    bool setLanguage(const QString& tag) override
    {
        freeDictionary();
        if (m_broker && !tag.isEmpty())
            m_dictionary = m_enchant.brokerRequestDict(m_broker, tag.toUtf8().constData());
        return m_dictionary;
    }

    bool isCorrect(const QString& word) override
    {
        const QByteArray bytes = word.toUtf8();
        // A fault of the dictionary is none of the word's.
        return !m_dictionary ||
               m_enchant.dictCheck(m_dictionary, bytes.constData(), bytes.size()) <= 0;
    }

    QStringList suggestions(const QString& word) override
    {
        QStringList words;
        if (!m_dictionary)
            return words;
        const QByteArray bytes = word.toUtf8();
        size_t count = 0;
        char** found = m_enchant.dictSuggest(m_dictionary, bytes.constData(), bytes.size(), &count);
        for (size_t i = 0; i < count; ++i)
            words += QString::fromUtf8(found[i]);
        if (found)
            m_enchant.dictFreeStringList(m_dictionary, found);
        return words;
    }

    void learn(const QString& word) override
    {
        const QByteArray bytes = word.toUtf8();
        if (m_dictionary)
            m_enchant.dictAdd(m_dictionary, bytes.constData(), bytes.size());
    }

private:
    void freeDictionary()
    {
        if (m_dictionary)
            m_enchant.brokerFreeDict(m_broker, m_dictionary);
        m_dictionary = nullptr;
    }

    Enchant m_enchant;
    EnchantBroker* m_broker = nullptr;
    EnchantDict* m_dictionary = nullptr;
};

} // namespace

std::unique_ptr<SpellingEngine> makeEnchantEngine()
{
    return std::make_unique<EnchantEngine>();
}

} // namespace quillory
