-- SPDX-License-Identifier: Apache-2.0
-- Queries of `orvale check` on the clinical database. Every row is a finding, and its columns are the key that is
-- shown. "--!" is the title of an inconsistency, "--?" of what is only worth knowing.

--! archivio: pazienti senza un codice valido (cod_paz)
SELECT cod_paz FROM archivio WHERE isnull(cod_paz) OR cod_paz <= 0 ORDER BY cod_paz;

-- The host may have removed the patient since.
--? Modifiche: modifiche di un paziente che non è in archivio (cod_paz)
SELECT DISTINCT t.cod_paz FROM Modifiche AS t LEFT JOIN archivio AS a ON t.cod_paz = a.cod_paz
WHERE isnull(a.cod_paz) ORDER BY t.cod_paz;

--! VISITAPROBL: visite di un problema che non esiste (IdVisitaProbl)
SELECT v.IdVisitaProbl FROM VISITAPROBL AS v LEFT JOIN PROBLEMS AS p ON v.id_Probl = p.idProblems
WHERE v.id_Probl > 0 AND isnull(p.idProblems) ORDER BY v.IdVisitaProbl;

--! VISITAPROBL: visite di un problema di un altro paziente (IdVisitaProbl)
SELECT v.IdVisitaProbl FROM VISITAPROBL AS v INNER JOIN PROBLEMS AS p ON v.id_Probl = p.idProblems
WHERE v.cod_paz <> p.cod_paz ORDER BY v.IdVisitaProbl;

--! riepil2: risultati senza la richiesta (idriepil2)
SELECT r2.idriepil2 FROM riepil2 AS r2
WHERE NOT EXISTS (SELECT r.minsan FROM riepil AS r WHERE r.minsan = r2.cod_rie AND r.tipo > 0)
ORDER BY r2.idriepil2;

--! riepil: accertamenti di un gruppo che non è in ESAMI (cod_pre)
SELECT r.cod_pre FROM riepil AS r LEFT JOIN ESAMI AS e ON r.tipo = e.tipo_esa
WHERE r.tipo > 0 AND r.tipo < 20 AND isnull(e.tipo_esa) ORDER BY r.cod_pre;

-- Medicines that are no longer sold leave the list; what was prescribed stays prescribed.
--? riepil: prescrizioni di un farmaco che non è (più) in elenco (cod_pre)
SELECT r.cod_pre FROM riepil AS r LEFT JOIN SPEFAR AS s ON r.minsan = s.CODSPE
WHERE r.tipo = 0 AND isnull(s.CODSPE) ORDER BY r.cod_pre;

--! SUGGERIT: suggerimenti senza la prescrizione (COD_PRE)
SELECT s.COD_PRE FROM SUGGERIT AS s LEFT JOIN riepil AS r ON s.COD_PRE = r.cod_pre
WHERE isnull(r.cod_pre) ORDER BY s.COD_PRE;
