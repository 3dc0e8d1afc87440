// Package words counts words, with what makes Go hard to colour: don't stop at 'quotes'
// or "these" in comments; https://example.org/ is no comment in a comment.
package words

import (
	"bufio"
	"context"
	"encoding/json"
	"errors"
	"fmt"
	"io"
	"net/http"
	"os"
	"regexp"
	"sort"
	"strings"
	"sync"
	"time"
)

//go:generate stringer -type=Kind
type Kind uint8

const (
	Unknown Kind = iota
	Short
	Long = 1 << 4
)

const (
	Million  = 1_000_000
	Mask     = 0xFF_FF
	Octal    = 0o777
	Binary   = 0b1010
	Tiny     = 1.5e-3
	Half     = .5
	Wave     = 2i
	Timeout  = 30 * time.Second
	Help     = `usage: words [-n NUMBER] FILE...

It's "raw": \n stays, // is no comment, for and if are no keywords here.
`
	Pattern = `[\w'"]+`
)

var (
	quotes = []string{"it's", "\"", `say "hi"`, "", "/* no comment */", "a // b", `one` + `two`}
	runes  = []rune{'"', '\'', '\\', '\n', '\x7f', '\u00e9', '語', '`', '/'}
	ErrNone = errors.New("no words")
	word    = regexp.MustCompile(Pattern)
)

// Count is one word and how often it was seen.
type Count struct {
	Word  string    `json:"word,omitempty" db:"word"`
	Times int       `json:"times"`
	Seen  time.Time `json:"-"`
	next  *Count
}

type Reader interface {
	~[]byte | ~string
	Next(ctx context.Context) (Count, error)
}

type Table[K comparable, V any] struct {
	mutex sync.RWMutex
	rows  map[K]V
}

func NewTable[K comparable, V any](size int) *Table[K, V] {
	return &Table[K, V]{rows: make(map[K]V, size)}
}

func (t *Table[K, V]) Update(key K, change func(old V, ok bool) V) (value V) {
	t.mutex.Lock()
	defer t.mutex.Unlock()
	old, ok := t.rows[key]
	value = change(old, ok)
	t.rows[key] = value
	return
}

func (k Kind) String() string {
	switch k {
	case Short, Long:
		return "known"
	case Unknown:
		fallthrough
	default:
		return fmt.Sprintf("Kind(%d)", uint8(k))
	}
}

/*
Read counts the words of what it reads,
	"strings" and 'runes' in it are comment.
*/
func Read(ctx context.Context, input io.Reader) ([]Count, error) {
	table := NewTable[string, int](64)
	scanner := bufio.NewScanner(input)
	scanner.Buffer(make([]byte, 0, 64<<10), 1<<20)
lines:
	for scanner.Scan() {
		select {
		case <-ctx.Done():
			return nil, ctx.Err()
		default:
		}
		line := strings.TrimSpace(scanner.Text())
		for i, w := range word.FindAllString(line, -1) {
			if i > 100 || w == "#" {
				continue lines
			}
			table.Update(strings.ToLower(w), func(n int, _ bool) int { return n + 1 })
		}
	}
	if err := scanner.Err(); err != nil && !errors.Is(err, io.EOF) {
		return nil, fmt.Errorf("reading: %w", err)
	}
	counts := make([]Count, 0, len(table.rows))
	for w, n := range table.rows {
		counts = append(counts, Count{Word: w, Times: n, Seen: time.Now().UTC()})
	}
	if len(counts) == 0 {
		return nil, ErrNone
	}
	sort.Slice(counts, func(i, j int) bool { return counts[i].Times > counts[j].Times })
	return counts[:min(len(counts), 10)], nil
}

func serve(w http.ResponseWriter, r *http.Request) {
	counts, err := Read(r.Context(), r.Body)
	if err != nil {
		http.Error(w, err.Error(), http.StatusBadRequest)
		return
	}
	w.Header().Set("Content-Type", "application/json; charset=utf-8")
	_ = json.NewEncoder(w).Encode(map[string]any{"counts": counts, "ok": true, "none": nil})
}

func main() {
	var group sync.WaitGroup
	results := make(chan string, len(os.Args))
	for _, path := range os.Args[1:] {
		group.Add(1)
		go func() {
			defer group.Done()
			results <- path
		}()
	}
	group.Wait()
	close(results)
	for path := range results {
		fmt.Fprintln(os.Stdout, path, `a`+"b", quotes[0], runes[1:])
	}
	if var1, ok := interface{}(runes).([]rune); !ok { panic(var1) }
	goto end
end:
	http.HandleFunc("/count", serve)
}
