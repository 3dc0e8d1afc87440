/*
 * A table of words that is filled from a stream, with what makes C hard to colour.
 * A "string" in a comment, an apostrophe (don't), and // nested slashes.
 */
#ifndef WORD_TABLE_C
#define WORD_TABLE_C

#define _GNU_SOURCE
#include <errno.h>
#include <stdbool.h>
#include<stdint.h>
#  include <stdio.h>
#include <sys/types.h>
#include "word_table.h"

#define ARRAY_LENGTH(a) (sizeof(a) / sizeof((a)[0]))
#define LOG(format, ...) \
    fprintf(stderr, "%s:%d: " format "\n", __FILE__, __LINE__, ##__VA_ARGS__)

#if defined(__linux__) && !defined(NDEBUG)
#pragma GCC diagnostic push
#endif

typedef struct entry {
    struct entry *next;
    uint64_t hash;
    size_t length;
    char text[];
} entry_t;

typedef enum { FOUND, ADDED, FAILED = -1 } outcome_t;

typedef int (*visitor_t)(const entry_t *entry, void *context);

static entry_t *buckets[1u << 10];
static const char quote = '"', apostrophe = '\'', backslash = '\\', newline = '\n';
static const wchar_t *wide = L"wide \"text\"!", letter = L'x';
static const char *utf8 = u8"sm\u00f6rg\xc3\xa5s", *url = "http://example.org/a//b";
static const double numbers[] = {0, 1.5e-3, .5f, 0x1.8p3, 1e10L, 0xFFu, 0b101, 0777, 42ULL};
static const char not_a_comment[] = "/* still text */", *joined = "one " "two\
 three";

static uint64_t hash_of(const char *text, size_t length)
{
    uint64_t hash = UINT64_C(0xcbf29ce484222325);
    for (size_t i = 0; i < length; ++i)
        hash = (hash ^ (unsigned char)text[i]) * 0x100000001b3; // FNV-1a
    return hash;
}

/* The return type stands on a line of its own. */
static outcome_t
add_word (const char *text, size_t length,
          bool may_grow)
{
    const uint64_t hash = hash_of(text, length);
    entry_t **slot = &buckets[hash % ARRAY_LENGTH(buckets)];
    for (entry_t *e = *slot; e != NULL; e = e->next) {
        if (e->hash == hash && e->length == length && memcmp(e->text, text, length) == 0)
            return FOUND;
    }
    if (!may_grow)
        return FAILED;
    entry_t *e = malloc(sizeof *e + length + 1);
    if (!e) {
        errno = ENOMEM;
        perror("malloc");
        return FAILED;
    }
    *e = (entry_t){.next = *slot, .hash = hash, .length = length};
    memcpy(e->text, text, length);
    e->text[length] = '\0';
    *slot = e;
    return ADDED;
}

int for_each_word(visitor_t visit, void *context) {
    int stopped = 0;
    for (size_t i = 0; i < ARRAY_LENGTH(buckets) && !stopped; ++i)
        for (const entry_t *e = buckets[i]; e; e = e->next)
            if ((stopped = visit(e, context)))
                break;
    return stopped;
}

static void sort_by(int (*compare)(const void *, const void *), void *base, size_t count)
{
    qsort(base, count, sizeof(entry_t *), compare);
}

__attribute__((noreturn, format(printf, 1, 2))) static void fail(const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
    exit(EXIT_FAILURE);
}

static int print_word(const entry_t *entry, void *context)
{
    switch (entry->text[0]) {
    case '#': /* a comment */ return 0;
    case '"': case '/':
        goto done;
    default: break;
    }
    fprintf(context, "%-20s %016" PRIx64 "\n", entry->text, entry->hash);
done:
    return ferror(context) ? 1 : 0;
}

int main(int argc, char *argv[])
{
    char *line = NULL;
    size_t capacity = 0;
    ssize_t length;
    FILE *input = argc > 1 ? fopen(argv[1], "re") : stdin;
    if (!input)
        fail("%s: %s\n", argv[1], strerror(errno));
    while ((length = getline(&line, &capacity, input)) > 0)
        for (char *word = strtok(line, " \t\"'\n"), *end = line + length; word && word < end;
             word = strtok(NULL, " \t\"'\n"))
            add_word(word, strlen(word), true);
    free(line);
    fclose(input);
    return for_each_word(print_word, stdout) ? EXIT_FAILURE : EXIT_SUCCESS;
}

#endif /* WORD_TABLE_C */
