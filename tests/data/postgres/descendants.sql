-- Kingbase and openGauss: what both have beside what is PostgreSQL's.

create domain datetime as timestamp;

-- nvarchar with a length, on the routines of varchar.
create type nvarchar;
create function nvarcharin(cstring, oid, int4) returns nvarchar
  language internal immutable strict as 'varcharin';
create function nvarcharout(nvarchar) returns cstring
  language internal immutable strict as 'varcharout';
create type nvarchar (input = nvarcharin, output = nvarcharout, like = pg_catalog.varchar,
  category = 'S',
  typmod_in = varchartypmodin, typmod_out = varchartypmodout);
create function nvarchar(nvarchar, int4, bool) returns nvarchar
  language internal immutable strict as 'varchar';
create cast (nvarchar as nvarchar) with function nvarchar(nvarchar, int4, bool) as implicit;
create cast (nvarchar as text) without function as implicit;

create function year(timestamp) returns numeric language sql as
  $$ select extract(year from $1) $$;
create function month(timestamp) returns numeric language sql as
  $$ select extract(month from $1) $$;
create function to_char(numeric) returns text language sql as 'select $1::text';
create function to_char(timestamp) returns text language sql as 'select $1::text';
create function to_char(text) returns text language sql as 'select $1';

-- Calendar boundaries between two moments, as datediff counts them.
create function boundaries(part text, a timestamp, b timestamp) returns numeric language sql as $$
  select trim_scale(case part
    when 'yy' then extract(year from b) - extract(year from a)
    when 'qq' then 4 * (extract(year from b) - extract(year from a)) +
                   extract(quarter from b) - extract(quarter from a)
    when 'mm' then 12 * (extract(year from b) - extract(year from a)) +
                   extract(month from b) - extract(month from a)
    when 'ww' then (b::date - a::date + extract(dow from a)::int) / 7
    when 'dd' then b::date - a::date
    when 'hh' then extract(epoch from date_trunc('hour', b) - date_trunc('hour', a)) / 3600
    when 'mi' then extract(epoch from date_trunc('minute', b) - date_trunc('minute', a)) / 60
    when 'ss' then extract(epoch from date_trunc('second', b) - date_trunc('second', a))
  end) $$;

-- Place of a part in a whole, from a place on; 0 when it is not there.
create function place(part text, whole text, start numeric) returns numeric language sql as $$
  select case position(part in substr(whole, start::int)) when 0 then 0
    else position(part in substr(whole, start::int)) + start - 1 end::numeric $$;
