//! Counts words, with what makes Rust hard to colour: don't stop at 'quotes' or "these".
#![warn(missing_docs, clippy::pedantic)]

use std::collections::{BTreeMap, HashMap};
use std::fmt::{self, Display, Write as _};
use std::io::{self, BufRead, BufReader};
use std::sync::{Arc, Mutex};

mod readers;
pub(crate) use readers::Source;

/// How many are kept. Text with `code`, "quotes" and a [`Table`].
pub const LIMIT: usize = 1_000;
const NUMBERS: [f64; 5] = [0.0, 1.5e-3, 2f64, 1e10_f64, 0xFFu8 as f64];
const BITS: u32 = 0b1010_1010 | 0o17 | 0xdead_beef;
static QUOTES: &[&str] = &["it's", "say \"hi\"", "", "// no comment", "/* nor this */", "\\"];
static RAW: &str = r"C:\dir\";
static HASHED: &str = r#"a "quoted" word // still text"#;
static LONG: &str = r##"
    {"key": "it's "# here"}
"##;
static BYTES: &[u8] = b"bytes \x7f\n";
const MARKS: [char; 8] = ['"', '\'', '\\', '\n', '\u{1F600}', 'é', '/', '{'];
const BYTE: u8 = b'"';
static JOINED: &str = "one \
    two";

/* A block comment
   with "strings", 'a and fn in it. */

#[derive(Debug, Clone, Copy, PartialEq, Eq, Hash, Default)]
#[repr(u8)]
pub enum Kind {
    #[default]
    Word = 1,
    Number { value: i64 },
    Other(char),
}

#[derive(Debug)]
pub struct Table<'a, T: ?Sized + 'a, const N: usize = 16>
where
    T: Display,
{
    name: &'a str,
    rows: BTreeMap<String, Vec<&'a T>>,
    hook: Option<Box<dyn Fn(&T) -> bool + Send + 'static>>,
}

pub trait Counter {
    type Item<'s>: AsRef<str> where Self: 's;
    const NAME: &'static str;

    fn count(&mut self, word: &str) -> usize;
    fn total(&self) -> usize { 0 }
}

impl<'a, T: ?Sized + Display, const N: usize> Table<'a, T, N> {
    /// Makes one.
    #[must_use]
    pub fn new(name: &'a str) -> Self {
        Self { name, rows: BTreeMap::new(), hook: None }
    }

    pub(crate) fn longest<'b>(&'b self, other: &'b str) -> &'b str
    where
        'a: 'b,
    {
        if self.name.len() >= other.len() { self.name } else { other }
    }

    pub async unsafe fn read<R: BufRead>(mut reader: R) -> io::Result<HashMap<String, usize>> {
        let mut counts = HashMap::<String, usize>::with_capacity(N);
        let mut line = String::new();
        'lines: while reader.read_line(&mut line)? > 0 {
            for word in line.split(|c: char| !c.is_alphanumeric() && c != '\'') {
                match word {
                    "" => continue,
                    "end" | "stop" => break 'lines,
                    w if w.starts_with('#') => {}
                    _ => *counts.entry(word.to_lowercase()).or_insert(0) += 1,
                }
            }
            line.clear();
        }
        Ok(counts)
    }
}

impl Display for Kind {
    fn fmt(&self, f: &mut fmt::Formatter<'_>) -> fmt::Result {
        match *self {
            Kind::Word => write!(f, "word"),
            Self::Number { value: n @ 0..=9 } => write!(f, "digit {n:>4}"),
            Self::Number { value } => write!(f, "number {value:#x} {:?}", "a\tb"),
            Self::Other(c) => f.write_char(c),
        }
    }
}

macro_rules! table {
    ($name:expr $(, $key:ident => $value:literal)* $(,)?) => {{
        let mut table = std::collections::HashMap::new();
        $( table.insert(stringify!($key), $value); )*
        ($name, table)
    }};
}

extern "C" fn callback(code: i32) -> i32 { code.wrapping_add(1) }

fn parse(text: &str) -> Result<(Kind, f32), Box<dyn std::error::Error + '_>> {
    let Some((left, right)) = text.split_once(':') else {
        return Err(format!("no colon in {text:?}").into());
    };
    let value = left.trim().parse::<i64>()?;
    let ratio = if let Ok(r) = right.parse() { r } else { f32::NAN };
    Ok((Kind::Number { value }, ratio))
}

fn main() -> io::Result<()> {
    let shared = Arc::new(Mutex::new(Vec::<u8>::new()));
    let worker = { let shared = Arc::clone(&shared);
        std::thread::spawn(move || shared.lock().unwrap().extend_from_slice(b"done")) };
    worker.join().expect("it's over");
    let (name, table) = table!("t", a => 1, b => 2,);
    println!("{name}: {} {:?}", table.len(), parse("1:2.5").ok());
    let r#type = i32::from(callback(0x7F)); let var1 = &r#type as *const _;
    assert!(!var1.is_null() && matches!(Kind::default(), Kind::Word), "odd: {}", 'x');
    Ok(())
}

#[cfg(test)]
mod tests {
    use super::*;

    #[test]
    #[should_panic(expected = "no colon")]
    fn wants_a_colon() {
        assert_eq!(parse("1").unwrap().0, Kind::Word);
    }
}
