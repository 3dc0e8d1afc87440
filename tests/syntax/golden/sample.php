<?php

declare(strict_types=1);

/**
 * The loan desk of the Harbour Library: who has which book, and until when.
 *
 * It is one file on purpose, so that it shows most of what the language has.
 *
 * @package Harbour\Loans
 * @see     https://harbour.example/api#loans
 */

namespace Harbour\Loans;

use DateInterval;
use DateTimeImmutable;
use Harbour\Model\{Book, Reader as Person};
use InvalidArgumentException;
use IteratorAggregate;
use PDO;
use Traversable;
use function array_filter, sprintf;
use const PHP_EOL;

require_once __DIR__ . '/vendor/autoload.php';

const LIMIT = 12;
define('LOAN_DAYS', 28);

# Prices are in cents; a fee never exceeds FEE_CAP.
const FEE_PER_DAY = 20, FEE_CAP = 1_500, RATE = 0.19, MASK = 0xFF, BITS = 0b1010, MODE = 0o644, TINY = 1.5e-3;

enum State: string
{
    case Free = 'free';
    case Lent = 'lent';
    case Lost = "lost";

    public static function fromRow(array $row): self
    {
        return self::tryFrom($row['state'] ?? '') ?? self::Free;
    }

    public function label(): string
    {
        return match ($this) {
            self::Free => 'on the shelf',
            self::Lent => 'lent until {date}',
            default => "lost // and found?",
        };
    }
}

interface Clock
{
    public function now(): DateTimeImmutable;
}

trait Logs
{
    private array $lines = [];

    protected function log(string $format, mixed ...$values): void
    {
        $this->lines[] = vsprintf($format, $values);
        if (count($this->lines) > 100 && $this->lines[0] !== '') {
            array_shift($this->lines);
        }
    }
}

final class SystemClock implements Clock
{
    public function now(): DateTimeImmutable { return new DateTimeImmutable('now'); }
}

#[\Attribute(\Attribute::TARGET_CLASS)]
final readonly class Table
{
    public function __construct(public string $name, public string $key = 'id') {}
}

/**
 * All loans that are open.
 */
#[Table('loans')]
abstract class Register implements IteratorAggregate, \Countable
{
    use Logs;

    public const VERSION = '3.1';
    protected static int $instances = 0;

    private ?PDO $connection = null;

    public function __construct(
        private readonly string $dsn,
        protected Clock $clock = new SystemClock(),
        private int|float $rate = RATE,
    ) {
        ++static::$instances;
    }

    abstract protected function table(): string;

    public function __destruct()
    {
        $this->connection = null;
    }

    public function getIterator(): Traversable
    {
        yield from $this->all();
    }

    public function count(): int
    {
        $statement = $this->pdo()->query("SELECT COUNT(*) FROM {$this->table()} WHERE state = 'lent'");

        return (int) $statement->fetchColumn();
    }

    /** @return array<int, Loan> */
    public function all(int $limit = LIMIT, ?callable $filter = null): array
    {
        $sql = <<<SQL
            SELECT l.id, l.book, l.reader, l.due, b.title
              FROM {$this->table()} AS l
              JOIN books AS b ON b.id = l.book   -- one book each
             WHERE l.state = 'lent' AND l.due >= :today
             ORDER BY l.due
             LIMIT $limit
            SQL;
        $statement = $this->pdo()->prepare($sql);
        $statement->execute(['today' => $this->clock->now()->format('Y-m-d')]);
        $rows = $statement->fetchAll(PDO::FETCH_ASSOC);
        $loans = array_map(static fn (array $row): Loan => Loan::fromRow($row), $rows);

        return $filter === null ? $loans : array_values(array_filter($loans, $filter));
    }

    public static function &instances(): int
    {
        return static::$instances;
    }

    final protected function pdo(): PDO
    {
        return $this->connection ??= new PDO($this->dsn, options: [
            PDO::ATTR_ERRMODE => PDO::ERRMODE_EXCEPTION,
            PDO::ATTR_EMULATE_PREPARES => false,
        ]);
    }
}

class Loan
{
    public function __construct(
        public readonly int $id,
        public readonly string $title,
        public readonly DateTimeImmutable $due,
        private State $state = State::Lent,
    ) {
        if ($id <= 0 || trim($title) === '') {
            throw new InvalidArgumentException(sprintf('Loan #%d has no title', $id));
        }
    }

    public static function fromRow(array $row): static
    {
        return new static((int) $row['id'], $row['title'], new DateTimeImmutable($row['due']), State::fromRow($row));
    }

    public function isOverdue(DateTimeImmutable $now): bool
    {
        return $this->due < $now && $this->state === State::Lent;
    }

    /**
     * What is to be paid, in cents. Nothing while `$now` lies before the day that it is due.
     */
    public function fee(DateTimeImmutable $now): int
    {
        if (!$this->isOverdue($now)) {
            return 0;
        }
        $days = (int) $this->due->diff($now)->days;
        for ($fee = 0, $day = 1; $day <= $days; $day++) {
            $fee += FEE_PER_DAY * ($day > 7 ? 2 : 1);
            if ($fee >= FEE_CAP) {
                break;
            }
        }

        return min($fee, FEE_CAP);
    }

    public function __toString(): string
    {
        return "\"{$this->title}\" (due {$this->due->format('j F')}), \$" . number_format($this->fee(new DateTimeImmutable()) / 100, 2);
    }

    public function __get(string $name): mixed
    {
        trigger_error("No property \$$name in " . __CLASS__, E_USER_NOTICE);
        return null;
    }
}

function overdue(iterable $loans, ?DateTimeImmutable $now = null): array
{
    $now ??= new DateTimeImmutable('today', new \DateTimeZone('Europe/London'));
    $late = [];
    foreach ($loans as $i => $loan) {
        if ($loan instanceof Loan and $loan->isOverdue($now)) {
            $late[$i] = $loan;
        } elseif (is_array($loan)) {
            continue;
        } else {
            // An "if (" in a comment is no function, nor is: function nothing() {
            unset($late[$i]);
        }
    }
    usort($late, fn (Loan $a, Loan $b) => $a->due <=> $b->due);

    return $late;
}

function &reference(array &$items, string|int $key): mixed
{
    global $config;
    static $calls = 0;
    $calls++;
    return $items[$key];
}

$byReader = function (string $name) use (&$config): array {
    return array_filter($config['readers'] ?? [], fn ($reader) => str_starts_with($reader, $name));
};

$plus = static fn (int $days): DateInterval => new DateInterval("P{$days}D");

$mail = <<<'TEXT'
    Dear reader,

    "$title" is late, isn't it? There is no $variable in here, and no \escape either.

        <b>The desk</b>
    TEXT;

$weird = 'It\'s a "quote" with # and // and /* inside' . "and 'this' as well" . PHP_EOL;
$path = "C:\\books\\$title\x41\u{1F4DA}";
$list = array('one' => 1, 'two' => 2.0, 3 => [true, FALSE, null]);
[$first, , $third] = [1, 2, 3];
['id' => $id, 'title' => $title] = $row ?? ['id' => 0, 'title' => ''];
$bits = (MASK & ~BITS) | (1 << 4) ^ 0x0f;
$value = $object?->child?->{'odd name'}[0] ?? 'none';

/* Switched off since the desk has a new printer:

    $printer = new Printer('lp0'); # the old one
    while ($printer->busy()) { sleep(1); }

*/

switch (strtolower($_GET['view'] ?? 'list')) {
    case 'csv':
        header('Content-Type: text/csv; charset=utf-8');
        foreach ($loans as $loan):
            fputcsv(STDOUT, [$loan->id, $loan->title, $loan->due->format(DATE_ATOM)]);
        endforeach;
        exit(0);

    default:
        break;
}

try {
    $register = new class('sqlite::memory:') extends Register {
        protected function table(): string
        {
            return 'loans';
        }
    };
    $loans = $register->all(limit: 50, filter: strlen(...));
} catch (\PDOException | InvalidArgumentException $error) {
    error_log($error->getMessage());
    http_response_code(500);
    $loans = [];
} finally {
    $user = htmlspecialchars($_SESSION['user'] ?? 'guest', ENT_QUOTES);
}

?>
<!DOCTYPE html>
<html lang="en">
<head>
    <meta charset="utf-8">
    <title><?= $user ?>: loans</title>
    <style>
        body { color: #1f242c; margin: 0 }
        .late { color: #b00020; }
    </style>
</head>
<body class="<?= count($loans) ? 'full' : 'empty' ?>">
<!-- The list. <?php echo "It is not shown while it is empty."; ?> -->
<h1>What <?= $user ?> has borrowed</h1>
<?php if (!empty($loans)): ?>
    <table id="loans" data-limit="<?= LIMIT ?>">
        <thead><tr><th scope="col">Title</th><th scope="col">Due</th><th>Fee</th></tr></thead>
        <tbody>
        <?php foreach ($loans as $n => $loan): ?>
            <tr class="<?= $n % 2 ? 'odd' : 'even' ?><?= $loan->isOverdue(new DateTimeImmutable()) ? ' late' : '' ?>">
                <td><a href="/loan.php?id=<?= $loan->id ?>&amp;from=list" title="It's &quot;here&quot;"><?= htmlspecialchars($loan->title) ?></a></td>
                <td><time datetime="<?= $loan->due->format('c') ?>"><?= $loan->due->format('j F Y') ?></time></td>
                <td><?= number_format($loan->fee(new DateTimeImmutable()) / 100, 2) ?>&nbsp;&euro;</td>
            </tr>
        <?php endforeach ?>
        </tbody>
    </table>
<?php else: ?>
    <p>Nothing. Don't let the evening be long: <a href="https://harbour.example/catalogue/">take a book</a>.</p>
<?php endif; ?>
<?php
function footer(int $year = 2026): string
{
    return "<footer>&copy; $year Harbour Library</footer>";
}
echo footer(), "\n";
?>
<script>
    // Asks before a book is reported as lost.
    document.querySelectorAll('a.lost').forEach((a) => a.addEventListener('click', (event) => {
        if (!confirm("Really lost?")) event.preventDefault();
    }));
</script>
</body>
</html>
