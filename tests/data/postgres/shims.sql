-- What the three databases have and PostgreSQL lacks, and the functions of the business database.
-- Where a body says nothing, only the signature matters: no test looks at what it returns.

-- Date parts are keywords there. Here they are columns of one row, which every statement reads.
create table date_parts (
  yy text primary key, qq text, mm text, dd text, ww text, hh text, mi text, ss text);
insert into date_parts values ('yy', 'qq', 'mm', 'dd', 'ww', 'hh', 'mi', 'ss');

-- The calendar of the business: a fiscal year begins in April of its calendar year. A period ends
-- with the last second of its last day; a month or quarter outside the year runs on into the next.
create function fStartTime(
  part text, y double precision, q double precision, m double precision, fiscal int)
returns timestamp language sql as $$
  select make_timestamp(y::int, 1, 1, 0, 0, 0) + make_interval(months => 3 * fiscal +
    case part when 'qq' then 3 * (q::int - 1) when 'mm' then m::int - 1 else 0 end) $$;
create function fEndTime(
  part text, y double precision, q double precision, m double precision, fiscal int)
returns timestamp language sql as $$
  select fStartTime(part, y, q, m, fiscal) - interval '1 second' +
    case part when 'yy' then interval '1 year' when 'qq' then interval '3 months'
    else interval '1 month' end $$;
create function fDatePart_acct(part text, d timestamp) returns numeric language sql as $$
  select date_part(case part when 'yy' then 'year' when 'qq' then 'quarter' else 'month' end,
                   d - interval '3 months')::numeric $$;

create function fRandBetween(a numeric, b numeric) returns numeric language sql as 'select a';
create function fUnixTimestamp() returns numeric language sql as 'select 0.0';
create function fUnixTimestamp2Datetime(a numeric, b numeric, c numeric)
  returns timestamp language sql as 'select null::timestamp';
create function fHMAC(a text, b text, c text) returns text language sql as 'select a';
create function fHmac2Base64(a text, b text, c text) returns text language sql as 'select a';
create function fBase64Encode(a text) returns text language sql as 'select a';
create function fVarbintohexstr(a text) returns text language sql as 'select a';
create function fStringSplit(a text, b text) returns text language sql as 'select a';
create function fStringDistinct(a text, b text) returns text language sql as 'select a';
create function fSHA256(a text) returns text language sql as 'select a';
create function fMd5(a text) returns text language sql as 'select a';
create function fUrlEncode(a text) returns text language sql as 'select a';
