-- A lending library, with what makes SQL hard to colour: don't stop at 'quotes' in comments.
/* A block comment
   with "quotes", -- dashes and select in it. */

BEGIN;

CREATE SCHEMA IF NOT EXISTS library;
SET search_path TO library, public;

CREATE TYPE library.state AS ENUM ('in', 'lent', 'lost');

CREATE TABLE IF NOT EXISTS book (
    id          BIGINT GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
    title       VARCHAR(200) NOT NULL CHECK (title <> ''),
    price       NUMERIC(10, 2) DEFAULT 9.99,
    weight      DOUBLE PRECISION,
    "order"     INTEGER UNIQUE,
    state       state NOT NULL DEFAULT 'in',
    tags        TEXT[] NOT NULL DEFAULT '{}',
    extra       JSONB DEFAULT '{"it''s": [1, "two"]}'::jsonb,
    added_at    TIMESTAMP WITH TIME ZONE DEFAULT CURRENT_TIMESTAMP
);

create table member (
    id serial primary key,
    name text not null,
    active boolean not null default true,
    joined date
);

create unlogged table "Odd ""Name""" (`back` int, [bracket] int);

create unique index concurrently if not exists book_title on book (lower(title));

insert into member (name, active, joined) values
    ('O''Brien', true, date '2026-11-21'),
    (N'Åsa', false, null),
    ('C:\dir\', TRUE, '2026-01-31'),        -- a backslash is a character like others
    (E'tab\tand \'quote\'', False, NULL);

insert into book (title, price, weight, tags)
select 'Volume ' || n, round(n * 1.5, 2), 1.5e-3, array['a', 'b']
from generate_series(1, 10) as n
on conflict (id) do update set price = excluded.price
returning id, title;

create or replace view lent_book as
select b.id,
       b.title as "Title -- not a comment",
       coalesce(m.name, 'nobody') as holder,
       count(*) over (partition by m.id order by b.added_at desc
                      rows between unbounded preceding and current row) as running,
       case when b.price > 20 then 'dear'
            when b.price is null then '?'
            else 'cheap'
       end as class
from book b
left join loan l on l.book_id = b.id and l.returned_at is null
left outer join member m using (id)
where b.state in ('lent', 'lost')
  and b.title not like '%/* no comment */%' escape '\'
  and extract(year from b.added_at) between 2000 and 2030;

WITH RECURSIVE chain (id, depth) AS (
    SELECT id, 0 FROM book WHERE id = :start_id
    UNION ALL
    SELECT b.id, chain.depth + 1
    FROM book AS b INNER JOIN chain ON b."order" = chain.id
    WHERE chain.depth < @max_depth
)
SELECT max(depth), min(depth), avg(depth)::numeric(5, 1), string_agg(id::text, ', ')
FROM chain
GROUP BY id HAVING COUNT(*) > 1
ORDER BY 1 DESC NULLS LAST
LIMIT 10 OFFSET 20;

create function lend(book_id bigint, member_id int default null)
returns trigger
language plpgsql as $$
declare
    v_count integer := 0;
begin
    select count(*) into v_count from book where id = $1 and state = 'in';
    if v_count = 0 then
        raise exception 'book % is not there', book_id using errcode = '23514';
    elsif member_id is null then
        raise notice 'it''s nobody''s';
    end if;
    update book set state = 'lent' where id = book_id;
    return new;
exception when unique_violation then
    return null;
end;
$$;

CREATE TRIGGER book_lent BEFORE UPDATE OF state ON book
    FOR EACH ROW WHEN (OLD.state IS DISTINCT FROM NEW.state)
    EXECUTE FUNCTION lend();

CREATE PROCEDURE tidy() LANGUAGE sql AS 'delete from loan where true';

merge into book as target
using (values (1, 2.5), (2, 0x1F)) as source (id, price) on target.id = source.id
when matched then update set price = source.price
when not matched then insert (id, price) values (source.id, source.price);

grant select, insert on all tables in schema library to reader;
delete from member where not active; drop table if exists old_loan cascade;
COMMIT;
